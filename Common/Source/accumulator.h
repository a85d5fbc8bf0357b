#ifndef ACCUMULATOR_H
#define ACCUMULATOR_H

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

/// The position of the first a_s_wanted at or after a_u_from, or npos. In linear time whatever the
/// texts, which no search of std::string promises.
inline std::size_t FindText(std::string_view a_s_text, std::string_view a_s_wanted,
                            std::size_t a_u_from)
{
    const void* l_p_found = memmem(a_s_text.data() + a_u_from, a_s_text.size() - a_u_from,
                                   a_s_wanted.data(), a_s_wanted.size());
    return l_p_found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(l_p_found) - a_s_text.data());
}

/// Bytes that have been read and not yet consumed. What is read goes straight behind what waits,
/// and consuming moves nothing: a block of many tiny parts is not shifted once a part.
class cAccumulator
{
public:
    /// Takes a_p_storage, whose owner has to keep it, and replaces it by one that a read of
    /// a_u_read bytes fits into behind a_u_waiting bytes that wait.
    cAccumulator(std::unique_ptr<char[]>& a_p_storage, std::size_t a_u_waiting,
                 std::size_t a_u_read)
        : m_u_size(a_u_waiting + a_u_read)
    {
        a_p_storage.reset(new char[m_u_size]);
        m_p_storage = a_p_storage.get();
    }

    std::string_view Bytes() const { return {m_p_storage + m_u_start, m_u_end - m_u_start}; }

    /// Where the next a_u_count bytes are to be put; Added() tells how many of them have come.
    /// Invalidates what Bytes() gave. REQUIRES that with what waits they are no more than the two
    /// numbers that were given at construction: otherwise the program ends, as what comes from
    /// outside would be written past the storage.
    char* Room(std::size_t a_u_count)
    {
        const std::string_view l_s_bytes = Bytes();
        const bool l_b_cheap = l_s_bytes.size() <= m_u_start;
        if (l_b_cheap || m_u_size - m_u_end < a_u_count) {
            std::memmove(m_p_storage, l_s_bytes.data(), l_s_bytes.size());
            m_u_start = 0;
            m_u_end = l_s_bytes.size();
        }
        if (m_u_size - m_u_end < a_u_count) {
            std::abort();
        }
        return m_p_storage + m_u_end;
    }

    void Added(std::size_t a_u_count) { m_u_end += a_u_count; }

    void Consume(std::size_t a_u_count)
    {
        m_u_start += a_u_count;
        m_u_searched = 0;
    }

    /// The position of the wanted text, or npos. A search that found nothing is resumed where it
    /// stopped, as long as nothing has been consumed and the same text is asked for.
    std::size_t ResumeFind(std::string_view a_s_wanted)
    {
        const std::string_view l_s_bytes = Bytes();
        const std::size_t l_u_found = FindText(l_s_bytes, a_s_wanted, m_u_searched);
        const bool l_b_retry =
            l_u_found == std::string_view::npos && l_s_bytes.size() >= a_s_wanted.size();
        m_u_searched = l_b_retry ? l_s_bytes.size() - a_s_wanted.size() + 1 : 0;
        return l_u_found;
    }

private:
    const std::size_t m_u_size;
    char* m_p_storage;
    std::size_t m_u_start = 0;
    std::size_t m_u_end = 0;
    std::size_t m_u_searched = 0; // no wanted text begins before this position
};

#endif
