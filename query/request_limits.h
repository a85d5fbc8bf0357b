#ifndef REQUEST_LIMITS_H
#define REQUEST_LIMITS_H

// Limits on what one request may take from the device and on what its process may do. A request may
// contain any expression, and not every web server ends a program that runs for ever. If the
// process was started with a tighter limit, that limit stays in force.

/// The exit status of a request that gets no response, or only part of one.
constexpr int NOT_ANSWERED = 255;

/// Limits everything but processor time. REQUIRES that no process that will execute another program
/// be forked afterwards: it would inherit some of this.
///   - Memory: the address space is limited to KESTO_MEMORY_LIMIT MiB, except in a build with
///     AddressSanitizer, which reserves more for itself. From now on, running out of memory ends
///     the process instead of throwing an exception: one line is logged at LOG_ERR, objects with
///     static storage duration are destroyed, and the exit status is NOT_ANSWERED.
///     std::set_new_handler() suspends this. If the memory of the whole device runs out, the kernel
///     kills this process before any other.
///   - Stack: the limit is raised to the usual 8 MiB, or as far as the hard limit allows. Below
///     1 MiB, an expression of a few hundred terms or a deep document would end the process with
///     SIGSEGV.
///   - File size: a write beyond the limit fails, as it does on a full disk, instead of ending the
///     process with SIGXFSZ.
///   - Privileges: should the process be taken over, it gains none from a program that it starts.
/// Also handles the signal by which the kernel says that processor time is used up, from whatever
/// limit: one line is logged at LOG_ERR, and the process ends at once with exit status
/// NOT_ANSWERED: nothing is written, and no destructor runs.
void LimitProcess();

/// Limits the processor time of the process to what it has used so far plus KESTO_CPU_LIMIT
/// seconds; a later call counts anew. REQUIRES LimitProcess(), which handles what follows.
void LimitProcessorTime();

#endif
