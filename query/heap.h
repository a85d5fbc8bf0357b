#ifndef HEAP_H
#define HEAP_H

#include <string>

/// While it lives, operator new takes memory from one block that is sized for a document's tree,
/// and operator delete leaves what came from there as it is: a tree is built of many small pieces
/// that stay until the process ends, so that looking for free ones and keeping account of them is a
/// twentieth of a request's time. What is left of the block goes back to the kernel at the end.
/// Where the block or the document is not to be had, or the block is full, memory comes from malloc
/// as ever.
///
/// Not in builds with AddressSanitizer, whose own operator new sees more. For one thread.
class cTreeMemory
{
public:
    explicit cTreeMemory(const std::string& a_s_documentPath);
    ~cTreeMemory();

    cTreeMemory(const cTreeMemory&) = delete;
    cTreeMemory& operator=(const cTreeMemory&) = delete;
};

#endif
