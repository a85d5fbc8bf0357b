#include "heap.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#if defined(M_MMAP_MAX) && defined(M_TRIM_THRESHOLD) && defined(MADV_POPULATE_WRITE)

namespace
{

// What a document's tree and its mirror take for each byte of its text, measured on device
// configurations. They are mostly pointers, hence the dependence on their size.
constexpr std::uint64_t TREE_BYTES_PER_BYTE = sizeof(void*) * 7 / 4;

constexpr std::size_t LARGEST_MAPPED = std::size_t{4} << 20U;

} // namespace

void FetchHeapFor(const std::string& a_s_documentPath)
{
    struct stat l_c_status = {};
    if (stat(a_s_documentPath.c_str(), &l_c_status) != 0) {
        return;
    }
    const auto l_u_page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const auto l_u_tree = std::min<std::uint64_t>(
        static_cast<std::uint64_t>(l_c_status.st_size) * TREE_BYTES_PER_BYTE, PTRDIFF_MAX);
    const auto l_u_size = static_cast<std::size_t>(l_u_tree) / l_u_page * l_u_page;

    // The block has to come from the heap, and the heap to keep its pages when the block is freed.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
    void* const l_p_block = std::aligned_alloc(l_u_page, l_u_size);
    if (l_p_block != nullptr) {
        madvise(l_p_block, std::min(l_u_size, LARGEST_MAPPED), MADV_POPULATE_WRITE);
        std::free(l_p_block);
    }
}

#else

// A C library without mallopt, or headers from before Linux 5.14: nothing else depends on this.
void FetchHeapFor(const std::string& /*a_s_documentPath*/) {}

#endif
