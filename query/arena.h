#ifndef ARENA_H
#define ARENA_H

#include <algorithm>
#include <cstddef>

/// Memory for many small pieces that live as long as each other. They are cut from a block one
/// after the other, without a record of each, and can only be taken back all at once. Not
/// thread-safe.
class cArena
{
public:
    /// Gets a block of at least that many bytes, or none if there is no memory for it. REQUIRES
    /// that there be no block yet.
    void Reserve(std::size_t a_u_size);

    /// Takes back all pieces, and returns the block to the kernel. REQUIRES that none of them is
    /// used any more.
    void Release();

    /// A piece of that many bytes, aligned for any type and different from all others even if it
    /// has none; null if there is no room for it.
    void* Allocate(std::size_t a_u_size)
    {
        char* const l_p_piece = m_p_next;
        const auto l_u_room = static_cast<std::size_t>(m_p_end - l_p_piece);
        if (a_u_size >= l_u_room) { // so the length fits too
            return nullptr;
        }
        constexpr std::size_t ALIGNMENT = alignof(std::max_align_t);
        m_p_next += (std::max(a_u_size, std::size_t{1}) + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
        return l_p_piece;
    }

    /// Whether that is the address of a piece.
    bool Holds(const void* a_p_address) const
    {
        return a_p_address >= m_p_begin && a_p_address < m_p_end;
    }

    /// Returns to the kernel what has not been handed out, unless that is less than the given
    /// number of bytes.
    void Trim(std::size_t a_u_least);

private:
    char* m_p_begin = nullptr;
    char* m_p_next = nullptr;
    char* m_p_end = nullptr;
};

#endif
