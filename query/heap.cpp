#include "heap.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Memory that a document's tree takes per byte of its text: 6 bytes on 32-bit ARM and 9 on x86-64,
// as measured on device configurations, plus one to spare.
constexpr std::uint64_t TREE_BYTES_PER_BYTE = 4 + sizeof(void*) * 3 / 4;

// The block, and the part of it that has not been handed out.
char* g_p_begin = nullptr;
char* g_p_next = nullptr;
char* g_p_end = nullptr;

// Has malloc keep the memory of the document's text when it is freed, so that what is made of the
// tree finds pages that are already there. A higher limit would let long values leave large holes.
void KeepFreedText()
{
#ifdef M_MMAP_THRESHOLD // glibc
    constexpr int LONGEST_TEXT = 2 << 20;
    mallopt(M_MMAP_THRESHOLD, LONGEST_TEXT);
    mallopt(M_TRIM_THRESHOLD, LONGEST_TEXT);
#endif
}

std::size_t PageSize()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

cTreeMemory::cTreeMemory(const std::string& a_s_documentPath)
{
    KeepFreedText();
    struct stat l_c_status = {};
    if (g_p_begin != nullptr || stat(a_s_documentPath.c_str(), &l_c_status) != 0) {
        return;
    }
    const std::size_t l_u_page = PageSize();
    const auto l_u_tree = std::min<std::uint64_t>(
        static_cast<std::uint64_t>(l_c_status.st_size) * TREE_BYTES_PER_BYTE, PTRDIFF_MAX / 2);
    const auto l_u_size = static_cast<std::size_t>(l_u_tree) / l_u_page * l_u_page + l_u_page;
    void* const l_p_block =
        mmap(nullptr, l_u_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (l_p_block == MAP_FAILED) {
        return;
    }
    // With pages of 4 KiB, the page faults of a large tree take about as long as its parsing.
    madvise(l_p_block, l_u_size, MADV_HUGEPAGE);
    g_p_begin = g_p_next = static_cast<char*>(l_p_block);
    g_p_end = g_p_begin + l_u_size;
}

cTreeMemory::~cTreeMemory()
{
    const std::size_t l_u_page = PageSize();
    const std::size_t l_u_used =
        (static_cast<std::size_t>(g_p_next - g_p_begin) + l_u_page - 1) / l_u_page * l_u_page;
    char* const l_p_unused = g_p_begin + l_u_used;
    munmap(l_p_unused, static_cast<std::size_t>(g_p_end - l_p_unused));
    g_p_next = g_p_end = l_p_unused;
}

#if !KESTO_SANITIZE

// Longer pieces come from malloc: the document's text and long values, which move as they grow,
// would leave holes.
constexpr std::size_t LONGEST_PIECE = 1024;

void* operator new(std::size_t a_u_size)
{
    if (a_u_size <= LONGEST_PIECE && a_u_size <= static_cast<std::size_t>(g_p_end - g_p_next)) {
        constexpr std::size_t ALIGNMENT = alignof(std::max_align_t);
        void* const l_p_piece = g_p_next;
        g_p_next += (std::max(a_u_size, std::size_t{1}) + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
        return l_p_piece;
    }
    for (;;) {
        void* const l_p_piece = std::malloc(std::max(a_u_size, std::size_t{1}));
        if (l_p_piece != nullptr) {
            return l_p_piece;
        }
        const std::new_handler l_p_handler = std::get_new_handler();
        if (l_p_handler == nullptr) {
            throw std::bad_alloc();
        }
        l_p_handler();
    }
}

void operator delete(void* a_p_piece) noexcept
{
    if (a_p_piece < g_p_begin || a_p_piece >= g_p_end) {
        std::free(a_p_piece);
    }
}

void operator delete(void* a_p_piece, std::size_t /*a_u_size*/) noexcept
{
    operator delete(a_p_piece);
}

#endif
