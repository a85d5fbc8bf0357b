#ifndef HEAP_H
#define HEAP_H

#include <string>

/// Has the kernel map the memory that loading the document will take in one call, instead of page
/// by page as the tree grows: a fault for every page is a good part of a short process's time.
/// Bounded to 4 MiB, which a document of little markup may not use up. Where the document or the
/// memory is not to be had, or the kernel or the C library does not offer it, nothing changes.
void FetchHeapFor(const std::string& a_s_documentPath);

#endif
