#ifndef HEAP_H
#define HEAP_H

#include <string>

/// Has the kernel extend the heap in one call by what loading the document will take, and map the
/// first 4 MiB of that in another, instead of doing both piece by piece as the tree grows: together
/// they are a good part of a short process's time. No more is mapped, since a document of little
/// markup may not use it. Where the document or the memory is not to be had, or the kernel or the C
/// library does not offer it, nothing changes.
void FetchHeapFor(const std::string& a_s_documentPath);

#endif
