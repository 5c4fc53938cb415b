#ifndef SIM_UNIX_SOCKET_H
#define SIM_UNIX_SOCKET_H

#include <string>

// A non-blocking Unix-domain socket of `type` listening on `path`. A socket
// file left there by an earlier run is removed first; anything else in the
// way, or a failed call, throws ErrnoError naming the path.
int ListenUnix(const std::string& path, int type);

// Accepts one pending connection, non-blocking; -1 when none is pending.
int AcceptUnix(int listener);

#endif
