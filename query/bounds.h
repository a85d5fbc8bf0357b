#ifndef BOUNDS_H
#define BOUNDS_H

// What one request may take of the device, and what its process may do. A request names expressions
// of any kind, and not every web server ends a program that goes on for ever. A tighter bound that
// the process was started with stays in force.

/// The exit status of a request for which nothing was written, or not all of it.
constexpr int NOTHING_WRITTEN = 255;

/// Bounds the address space of the process to KESTO_MEMORY_LIMIT MiB, but not in a build with
/// AddressSanitizer, which reserves more for itself. Where memory does not suffice from now on, the
/// process ends instead of an exception being thrown: one line at LOG_ERR tells so, objects of
/// static storage are destroyed, and the exit status is NOTHING_WRITTEN. std::set_new_handler()
/// suspends that. Should the memory of the whole device run out, the kernel kills this process
/// before any other, so REQUIRES that nothing be forked any more that has to live longer.
void BoundMemory();

/// Raises the limit of the stack to the usual 8 MiB, or as far as the hard limit allows: below 1
/// MiB an expression of a few hundred terms, or a deep document, would end the process by SIGSEGV.
void ProvideStack();

/// Makes a write beyond the limit of a file's size fail, as it does on a full disk, instead of
/// ending the process by SIGXFSZ. REQUIRES that nothing be forked any more that becomes another
/// program: it would inherit this.
void SurviveFileSizeLimit();

/// Forbids the process, should it be taken over, to gain privileges by a program that it starts. It
/// starts none any more: REQUIRES that nothing be forked any more that becomes another program.
void RefuseNewPrivileges();

/// Bounds the processor time of the process to what it has used by now and KESTO_CPU_LIMIT seconds
/// more. When it is used up, one line at LOG_ERR tells so, and the process ends at once with exit
/// status NOTHING_WRITTEN: nothing is written, and no destructor runs.
void BoundProcessorTime();

#endif
