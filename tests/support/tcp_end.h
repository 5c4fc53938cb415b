#ifndef TESTS_SUPPORT_TCP_END_H
#define TESTS_SUPPORT_TCP_END_H

#include <optional>

// One end of a TCP connection on this host, as the kernel lists it.
struct TcpEnd {
    int state = 0;                    // TCP_ESTABLISHED, TCP_CLOSE_WAIT, ... of netinet/tcp.h
    unsigned long send_queue = 0;     // bytes written that the peer has not acknowledged yet
    unsigned long receive_queue = 0;  // bytes received that its owner has not read yet
};

// The end with local port `local_port` whose peer has port `remote_port`,
// from /proc/net/tcp and /proc/net/tcp6 (ends waiting out TIME_WAIT are
// left out); none when the kernel lists no such end.
std::optional<TcpEnd> FindTcpEnd(unsigned short local_port, unsigned short remote_port);

#endif
