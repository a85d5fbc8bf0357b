#ifndef HEAP_H
#define HEAP_H

#include <string>

/// While an instance exists, operator new takes small pieces from an arena (arena.h): a document's
/// tree consists of many that remain until the process ends, and finding free memory for each and
/// keeping a record of it takes a twentieth of a request's time. Where memory might become scarce,
/// everything comes from malloc instead, which wastes less: no load fails that would succeed
/// without the arena. The memory of a failed document serves the next, so the constructor REQUIRES
/// that nothing allocated while an earlier instance existed is used any more.
///
/// From the first instance on, malloc keeps up to 2 MiB of freed memory. Disabled in builds with
/// AddressSanitizer, whose own operator new detects more. Not thread-safe.
class cTreeMemory
{
public:
    /// The size of the document determines that of the arena; without a document there is none.
    explicit cTreeMemory(const std::string& a_s_documentPath);
    ~cTreeMemory();

    cTreeMemory(const cTreeMemory&) = delete;
    cTreeMemory& operator=(const cTreeMemory&) = delete;
};

#endif
