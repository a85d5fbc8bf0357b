#ifndef ACCUMULATOR_H
#define ACCUMULATOR_H

#include <cstring>
#include <string>
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

/// Bytes that have been read and not yet consumed. Consuming moves nothing: a block of many tiny
/// parts is not shifted once a part.
class cAccumulator
{
public:
    std::string_view Bytes() const { return std::string_view(m_s_bytes).substr(m_u_start); }

    void Append(std::string_view a_s_bytes)
    {
        if (m_u_start >= m_s_bytes.size() - m_u_start) {
            m_s_bytes.erase(0, m_u_start);
            m_u_start = 0;
        }
        m_s_bytes.append(a_s_bytes);
    }

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
    std::string m_s_bytes;
    std::size_t m_u_start = 0;
    std::size_t m_u_searched = 0; // no wanted text begins before this position
};

#endif
