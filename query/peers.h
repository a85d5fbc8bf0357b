#ifndef PEERS_H
#define PEERS_H

/// Sends SIGUSR2 to the two peer daemons, brolvex first, each through a shell child that runs
/// killall. Returns at once: nobody waits for the children, and at no time do they hold the
/// caller's standard streams, so a web server sees the end of the response when the response ends.
/// If the process may use only a single core, the children first wait for it to end, for at most
/// 100 ms. They inherit what a shell needs of the environment, PATH above all, and no descriptor. A
/// child that cannot be forked or become a shell sends no signal; nothing is logged about it.
/// REQUIRES that the standard streams be open, and nothing unwritten in stdio buffers, which a
/// child would write a second time.
void SignalPeers();

#endif
