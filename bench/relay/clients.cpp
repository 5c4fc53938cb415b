#include "bench/relay/clients.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <stdexcept>

namespace {

const char kAck[] = "<norvance><vela><ack>true</ack></vela></norvance>";

int Connect(int port, double seconds) {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<unsigned short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    for (;;) {
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return fd;
        close(fd);
        if (std::chrono::steady_clock::now() > give_up)
            throw std::runtime_error("bench: cannot connect to port " + std::to_string(port));
        usleep(500);
    }
}

bool StartsWith(const char* line, std::size_t length, const char* prefix) {
    const std::size_t n = std::strlen(prefix);
    return length >= n && std::memcmp(line, prefix, n) == 0;
}

void Count(Clients::Counts& counts, const char* line, std::size_t length) {
    if (StartsWith(line, length, "DATA\t")) {
        ++counts.data;
        counts.data_bytes += static_cast<long>(length) + 1;
        counts.last_data_ns = NowNs();
    } else if (StartsWith(line, length, "DATAH\t")) {
        counts.greeted = true;
    } else if (length == sizeof kAck - 1 && StartsWith(line, length, kAck)) {
        ++counts.acks;
        counts.last_answer_ns = NowNs();
    } else if (StartsWith(line, length, "<norvance>")) {
        ++counts.answers;
        counts.last_answer_ns = NowNs();
    }
}

}  // namespace

std::int64_t NowNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

Clients::Clients(int port, int count, double seconds) {
    for (int i = 0; i < count; ++i) {
        fds_.push_back(Connect(port, seconds));
        counts_.emplace_back(new Counts);
    }
    partial_.resize(fds_.size());
    if (pipe(stop_) != 0) throw std::runtime_error("bench: pipe failed");
    thread_ = std::thread([this] { ReadAll(); });
}

Clients::~Clients() {
    if (write(stop_[1], "x", 1) != 1) {
        // The reader then stops when the relay closes the connections.
    }
    thread_.join();
    for (int fd : fds_) close(fd);
    close(stop_[0]);
    close(stop_[1]);
}

long Clients::FewestData() const {
    long fewest = counts_.empty() ? 0 : counts_[0]->data.load();
    for (const auto& counts : counts_) fewest = std::min(fewest, counts->data.load());
    return fewest;
}

bool Clients::AllGreeted() const {
    for (const auto& counts : counts_)
        if (!counts->greeted) return false;
    return true;
}

std::int64_t Clients::LastDataNs() const {
    std::int64_t last = 0;
    for (const auto& counts : counts_) last = std::max(last, counts->last_data_ns.load());
    return last;
}

void Clients::Send(int client, const std::string& line) {
    const std::string text = line + "\n";
    if (write(fds_[client], text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("bench: a client could not send");
}

// Reads every client until stopped, cutting lines out of what arrives.
void Clients::ReadAll() {
    std::vector<pollfd> table;
    for (int fd : fds_) table.push_back(pollfd{fd, POLLIN, 0});
    table.push_back(pollfd{stop_[0], POLLIN, 0});
    std::vector<char> chunk(1 << 16);
    for (;;) {
        if (poll(table.data(), table.size(), -1) < 0) continue;
        if (table.back().revents) return;
        for (std::size_t i = 0; i < fds_.size(); ++i) {
            if (!table[i].revents) continue;
            const ssize_t got = read(fds_[i], chunk.data(), chunk.size());
            if (got <= 0) {
                table[i].fd = -1;
                continue;
            }
            std::string& text = partial_[i];
            text.append(chunk.data(), static_cast<std::size_t>(got));
            std::size_t start = 0;
            for (std::size_t end; (end = text.find('\n', start)) != std::string::npos;
                 start = end + 1)
                Count(*counts_[i], text.data() + start, end - start);
            text.erase(0, start);
        }
    }
}
