#include "tests/support/tcp_end.h"

#include <netinet/tcp.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

// The port of an "address:port" column, both in hexadecimal.
unsigned long PortOf(const std::string& column) {
    return std::stoul(column.substr(column.rfind(':') + 1), nullptr, 16);
}

std::optional<TcpEnd> FindIn(const char* table, unsigned short local_port,
                             unsigned short remote_port) {
    std::ifstream in(table);
    std::string line;
    std::getline(in, line);  // the column names
    while (std::getline(in, line)) {
        std::istringstream columns(line);
        std::string slot, local, remote, state, queues;
        if (!(columns >> slot >> local >> remote >> state >> queues)) continue;
        if (PortOf(local) != local_port || PortOf(remote) != remote_port) continue;
        TcpEnd end;
        end.state = static_cast<int>(std::stoul(state, nullptr, 16));
        if (end.state == TCP_TIME_WAIT) continue;
        end.send_queue = std::stoul(queues.substr(0, queues.find(':')), nullptr, 16);
        end.receive_queue = std::stoul(queues.substr(queues.find(':') + 1), nullptr, 16);
        return end;
    }
    return std::nullopt;
}

}  // namespace

std::optional<TcpEnd> FindTcpEnd(unsigned short local_port, unsigned short remote_port) {
    if (auto end = FindIn("/proc/net/tcp6", local_port, remote_port)) return end;
    return FindIn("/proc/net/tcp", local_port, remote_port);
}
