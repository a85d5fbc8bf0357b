#ifndef BOUNDS_H
#define BOUNDS_H

// Limits on what one request may take from the device and on what its process may do. A request may
// contain any expression, and not every web server ends a program that runs for ever. If the
// process was started with a tighter limit, that limit stays in force.

/// The exit status of a request whose response was not written, or not written in full.
constexpr int NOTHING_WRITTEN = 255;

/// Limits the address space of the process to KESTO_MEMORY_LIMIT MiB, except in a build with
/// AddressSanitizer, which reserves more for itself. From now on, running out of memory ends the
/// process instead of throwing an exception: one line is logged at LOG_ERR, objects with static
/// storage duration are destroyed, and the exit status is NOTHING_WRITTEN. std::set_new_handler()
/// suspends this. If the memory of the whole device runs out, the kernel kills this process before
/// any other, so REQUIRES that no process that must outlive this one be forked afterwards.
void BoundMemory();

/// Raises the stack limit to the usual 8 MiB, or as far as the hard limit allows. Below 1 MiB, an
/// expression of a few hundred terms or a deep document would end the process with SIGSEGV.
void ProvideStack();

/// Makes a write beyond the file size limit fail, as it does on a full disk, instead of ending the
/// process with SIGXFSZ. REQUIRES that no process that will execute another program be forked
/// afterwards: it would inherit this.
void SurviveFileSizeLimit();

/// Prevents the process, should it be taken over, from gaining privileges through a program that it
/// starts. It starts none from now on: REQUIRES that no process that will execute another program
/// be forked afterwards.
void RefuseNewPrivileges();

/// Limits the processor time of the process to what it has used so far plus KESTO_CPU_LIMIT
/// seconds. When that is used up, one line is logged at LOG_ERR and the process ends at once with
/// exit status NOTHING_WRITTEN: nothing is written, and no destructor runs.
void BoundProcessorTime();

#endif
