#ifndef BENCH_RELAY_CLIENTS_H
#define BENCH_RELAY_CLIENTS_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// TCP clients that read everything the relay sends them, on a thread of
// their own, and count what they received: greetings, data records, acks and
// XML answers. The counters may be read from any thread.
class Clients {
public:
    struct Counts {
        std::atomic<bool> greeted{false};  // the daemon's data header came
        std::atomic<long> data{0};
        std::atomic<long> data_bytes{0};
        std::atomic<std::int64_t> last_data_ns{0};
        std::atomic<long> acks{0};
        std::atomic<long> answers{0};  // XML answer lines other than the ack
        std::atomic<std::int64_t> last_answer_ns{0};
    };

    // Connects `count` clients to the loopback `port`, retrying for up to
    // `seconds` while nothing listens; throws when a client cannot connect.
    Clients(int port, int count, double seconds = 10);
    ~Clients();
    Clients(const Clients&) = delete;
    Clients& operator=(const Clients&) = delete;

    int size() const { return static_cast<int>(fds_.size()); }
    const Counts& of(int client) const { return *counts_[client]; }
    // The fewest data records any client received.
    long FewestData() const;
    // Whether the daemon greeted every client: from then on each gets every
    // record.
    bool AllGreeted() const;
    // When the last data record reached any client.
    std::int64_t LastDataNs() const;
    // Sends one line (a newline is added) from `client`.
    void Send(int client, const std::string& line);

private:
    void ReadAll();

    std::vector<int> fds_;
    std::vector<std::unique_ptr<Counts>> counts_;
    std::vector<std::string> partial_;
    int stop_[2] = {-1, -1};
    std::thread thread_;
};

// Steady-clock nanoseconds, the clock of the counters' times.
std::int64_t NowNs();

#endif
