#ifndef ACCUMULATOR_H
#define ACCUMULATOR_H

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

/// The position of the first a_s_wanted at or after a_u_from, or npos. Takes linear time for any
/// text, which no search of std::string guarantees.
inline std::size_t FindText(std::string_view a_s_text, std::string_view a_s_wanted,
                            std::size_t a_u_from)
{
    const void* l_p_found = memmem(a_s_text.data() + a_u_from, a_s_text.size() - a_u_from,
                                   a_s_wanted.data(), a_s_wanted.size());
    return l_p_found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(l_p_found) - a_s_text.data());
}

/// Bytes that have been read but not yet consumed. New bytes are read directly after the waiting
/// ones, and consuming moves nothing: a block of many tiny parts is not shifted once per part.
class cAccumulator
{
public:
    /// Uses a_p_storage, which its owner must keep, and replaces it with a buffer that holds
    /// a_u_waiting waiting bytes and a read of a_u_read bytes after them.
    cAccumulator(std::unique_ptr<char[]>& a_p_storage, std::size_t a_u_waiting,
                 std::size_t a_u_read)
        : m_u_size(a_u_waiting + a_u_read)
    {
        a_p_storage.reset(new char[m_u_size]);
        m_p_storage = a_p_storage.get();
    }

    std::string_view Bytes() const { return {m_p_storage + m_u_start, m_u_end - m_u_start}; }

    /// Where to put the next a_u_count bytes; report with Added() how many have arrived.
    /// Invalidates what Bytes() returned. REQUIRES: together with the waiting bytes they do not
    /// exceed the sum of the two numbers given at construction. Otherwise the program aborts, since
    /// outside input would be written past the storage.
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

    /// The position of the wanted text, or npos. A search that found nothing resumes where it
    /// stopped, provided that nothing has been consumed and the same text is wanted.
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
    std::size_t m_u_searched = 0; // the wanted text does not begin before this position
};

#endif
