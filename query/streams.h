#ifndef STREAMS_H
#define STREAMS_H

/// Opens closed standard streams on /dev/null, for reading: otherwise the log's socket or the
/// document would become standard input or output. A body is then empty, and an answer that nobody
/// can receive counts as not written.
void OpenStandardStreams();

/// Closes every descriptor from 0 to the given one. On a kernel before 5.9, which cannot do so in
/// one call, closes the standard streams alone.
void CloseDescriptors(unsigned a_u_last);

/// While an instance exists, this process and the children that it forks have no standard streams:
/// only a message that waits in a socket refers to them. A web server cannot finish a response as
/// long as any process holds its pipe; a child that had to let go of it could do so only once it
/// gets the processor. The destructor puts the streams back. If they cannot be parked, they stay
/// open; if they cannot be put back, OpenStandardStreams() replaces them.
/// REQUIRES that the standard streams be open.
class cParkedStreams
{
public:
    cParkedStreams();
    ~cParkedStreams();

    cParkedStreams(const cParkedStreams&) = delete;
    cParkedStreams& operator=(const cParkedStreams&) = delete;

private:
    int m_sockets[2] = {-1, -1};
};

#endif
