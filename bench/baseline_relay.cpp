// The bare relay, the yardstick of the daemon's cost: it listens on a TCP
// port, takes `clients` connections, then formats a record line as long as
// a data line and write()s it to every connection, `rate` times a second (0:
// as fast as it can), until a connection closes. The line is padded to
// `length` bytes, the mean length of the daemon's data lines. Nothing else: no poll loop, no
// output buffers, no document. What it costs is what relaying alone costs
// on this machine.
//
//   bench-baseline PORT CLIENTS RATE LENGTH
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

int Listen(int port) {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<unsigned short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(fd, 1024) != 0) {
        std::perror("bench-baseline: listen");
        std::exit(1);
    }
    return fd;
}

// A line of a data record's shape, padded to `target` bytes with a field of
// zeros, with its checksum, formatted anew for each record as the daemon
// does.
int FormatRecord(char* line, std::size_t size, unsigned n, int target) {
    int length =
        std::snprintf(line, size,
                      "DATA\t%u\t%u\t%u\t0\t%g\t%g\t%g\t%g\t%g\t0\t0\t0\t0\t0\t0\t0\t0\t0\t"
                      "%g\t%g\t%g\t",
                      n * 25, 1767225600 + n / 40, (n % 40) * 25000000, 0.0834 + n % 7 * 1e-4,
                      2.005 + n % 5 * 1e-3, 19.998, 101.302, 60.0, 20.01, 19.99, 20.02);
    for (; length < target - 5 && length < static_cast<int>(size) - 8; ++length) line[length] = '0';
    line[length++] = '\t';
    unsigned sum = 0;
    for (int i = 0; i < length; ++i) sum += static_cast<unsigned char>(line[i]);
    return length + std::snprintf(line + length, size - length, "%3u\n", sum % 256);
}

void WaitForNext(timespec& due, long period_ns) {
    due.tv_nsec += period_ns;
    while (due.tv_nsec >= 1000000000) {
        due.tv_nsec -= 1000000000;
        ++due.tv_sec;
    }
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &due, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: bench-baseline PORT CLIENTS RATE LENGTH\n");
        return 2;
    }
    const int listener = Listen(std::atoi(argv[1]));
    const int clients = std::atoi(argv[2]);
    const long rate = std::atol(argv[3]);
    const int length = std::atoi(argv[4]);
    std::printf("bench-baseline: ready\n");
    std::fflush(stdout);

    std::vector<int> sockets;
    while (static_cast<int>(sockets.size()) < clients) {
        const int fd = accept(listener, nullptr, nullptr);
        if (fd >= 0) sockets.push_back(fd);
    }
    timespec due;
    clock_gettime(CLOCK_MONOTONIC, &due);
    char line[512];
    for (unsigned n = 0;; ++n) {
        const int size = FormatRecord(line, sizeof line, n, length);
        for (int fd : sockets)
            if (write(fd, line, static_cast<std::size_t>(size)) != size) return 0;
        if (rate > 0) WaitForNext(due, 1000000000L / rate);
    }
}
