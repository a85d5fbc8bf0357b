#ifndef INTERPOSED_H
#define INTERPOSED_H

#include <string>
#include <vector>

/// What the code under test logged, as "priority text" ("3   main(): CGI parse failed.").
/// The test program has a syslog of its own, so nothing leaves the process.
std::vector<std::string>& Logged();

/// A standard input whose bytes arrive in given pieces: each time the code under test waits in
/// poll, which the test program has of its own too, the next piece is there, and at last the end of
/// input. Without threads or sleeps, so a piece ends where it was said to end.
class cDelivery
{
public:
    /// With a_b_keepOpen the sender stays connected after the last piece, as some servers do; a
    /// wait for one byte more then throws std::logic_error.
    explicit cDelivery(std::vector<std::string> a_v_pieces, bool a_b_keepOpen = false);
    ~cDelivery();
    cDelivery(const cDelivery&) = delete;
    cDelivery& operator=(const cDelivery&) = delete;

    void DeliverNext();

private:
    std::vector<std::string> m_v_pieces;
    std::size_t m_u_next = 0;
    bool m_b_keepOpen;
    int m_i_sender = -1;
    int m_i_savedInput;
};

#endif
