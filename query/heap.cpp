#include "heap.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <sys/resource.h>
#include <sys/stat.h>

#include "arena.h"

namespace
{

cArena g_c_arena;
std::size_t g_u_longestPiece = 0; // that operator new takes from the arena

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

// Memory that a tree takes per byte of the document: 6 bytes on 32-bit ARM and 9 on x86-64, as
// measured on device configurations, plus one to spare.
constexpr std::uint64_t USUAL_PER_BYTE = 4 + sizeof(void*) * 3 / 4;

// More than the tree of any document takes. That of x<e/>x<e/>..., a text and an element for every
// five bytes, takes 42 on 32-bit ARM and 66 on x86-64.
constexpr std::uint64_t MOST_PER_BYTE = 12 * sizeof(void*);

// Whether memory suffices for the program and for any document of that size.
bool IsMemoryPlentiful(std::uint64_t a_u_documentSize)
{
    constexpr std::uint64_t PROGRAM = 4 << 20U;
    rlimit l_c_limit = {};
    const bool l_b_known = getrlimit(RLIMIT_AS, &l_c_limit) == 0;
    const auto l_u_limit = std::min<std::uint64_t>(l_c_limit.rlim_cur, PTRDIFF_MAX);
    return l_b_known && l_u_limit > PROGRAM &&
           (l_u_limit - PROGRAM) / MOST_PER_BYTE > a_u_documentSize;
}

} // namespace

cTreeMemory::cTreeMemory(const std::string& a_s_documentPath)
{
    KeepFreedText();
    g_c_arena.Release();
    struct stat l_c_status = {};
    const bool l_b_there = stat(a_s_documentPath.c_str(), &l_c_status) == 0;
    const auto l_u_size = static_cast<std::uint64_t>(l_c_status.st_size);
    if (l_b_there && IsMemoryPlentiful(l_u_size)) {
        g_c_arena.Reserve(static_cast<std::size_t>(l_u_size * USUAL_PER_BYTE));
        g_u_longestPiece = 1024; // longer ones, which move as they grow, would leave long holes
    }
}

cTreeMemory::~cTreeMemory()
{
    g_u_longestPiece = 0;
    constexpr std::size_t WORTHWHILE = std::size_t{256} << 10U; // the time of a system call
    g_c_arena.Trim(WORTHWHILE);
}

#if !KESTO_SANITIZE

void* operator new(std::size_t a_u_size)
{
    if (a_u_size - 1 < g_u_longestPiece) { // zero bytes come from malloc, which makes them a piece
        void* const l_p_piece = g_c_arena.Allocate(a_u_size);
        if (l_p_piece != nullptr) {
            return l_p_piece;
        }
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
    if (!g_c_arena.Holds(a_p_piece)) {
        std::free(a_p_piece);
    }
}

void operator delete(void* a_p_piece, std::size_t /*a_u_size*/) noexcept
{
    operator delete(a_p_piece);
}

#endif
