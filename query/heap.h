#ifndef HEAP_H
#define HEAP_H

#include <string>

/// While an instance exists, operator new takes memory from one block sized for a document's tree,
/// and operator delete leaves memory from that block alone. A tree consists of many small pieces
/// that remain until the process ends; finding free pieces and keeping track of them takes a
/// twentieth of a request's time. The destructor returns the unused part of the block to the
/// kernel. If the block cannot be allocated, the document cannot be found or the block is full,
/// memory comes from malloc as usual, which from then on keeps up to 2 MiB of freed memory.
///
/// Disabled in builds with AddressSanitizer, whose own operator new detects more. Not thread-safe.
class cTreeMemory
{
public:
    explicit cTreeMemory(const std::string& a_s_documentPath);
    ~cTreeMemory();

    cTreeMemory(const cTreeMemory&) = delete;
    cTreeMemory& operator=(const cTreeMemory&) = delete;
};

#endif
