#include "arena.h"

#include <sys/mman.h>
#include <unistd.h>

static std::size_t PageSize()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void cArena::Reserve(std::size_t a_u_size)
{
    const std::size_t l_u_size = (a_u_size / PageSize() + 1) * PageSize();
    void* const l_p_block =
        mmap(nullptr, l_u_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (l_p_block != MAP_FAILED) {
        // With pages of 4 KiB, the page faults of a large tree take about as long as its parsing.
        madvise(l_p_block, l_u_size, MADV_HUGEPAGE);
        m_p_begin = m_p_next = static_cast<char*>(l_p_block);
        m_p_end = m_p_begin + l_u_size;
    }
}

void cArena::Release()
{
    if (m_p_begin != nullptr) {
        munmap(m_p_begin, static_cast<std::size_t>(m_p_end - m_p_begin));
        m_p_begin = m_p_next = m_p_end = nullptr;
    }
}

void cArena::Trim(std::size_t a_u_least)
{
    const std::size_t l_u_unused =
        static_cast<std::size_t>(m_p_end - m_p_next) / PageSize() * PageSize();
    if (l_u_unused != 0 && l_u_unused >= a_u_least) {
        m_p_end -= l_u_unused;
        munmap(m_p_end, l_u_unused);
    }
}
