#ifndef TESTS_SUPPORT_LINE_CLIENT_H
#define TESTS_SUPPORT_LINE_CLIENT_H

#include <chrono>
#include <string>

// A TCP client of the daemon that reads what it receives line by line.
class LineClient {
public:
    // Connects to the daemon's port on the loopback address; check
    // Connected(). A `receive_buffer` above 0 sets the socket's receive
    // buffer (bytes) before connecting.
    explicit LineClient(unsigned short port, int receive_buffer = 0);
    ~LineClient();
    LineClient(const LineClient&) = delete;
    LineClient& operator=(const LineClient&) = delete;

    bool Connected() const { return fd_ >= 0; }
    // True once a read found the connection closed by the daemon.
    bool Closed() const { return closed_; }
    // The client's own port; 0 when not connected.
    unsigned short LocalPort() const;
    // Bytes sent that the daemon's side has not yet acknowledged.
    std::size_t Unacknowledged() const;
    // Sends `text` as it stands.
    void Send(const std::string& text);
    // Tells the daemon that nothing more will be sent.
    void ShutdownSending();
    // The next line with its "\n"; empty when none came before the deadline
    // or the daemon closed the connection.
    std::string ReadLine(std::chrono::milliseconds deadline = std::chrono::seconds(10));
    // The next line that begins with `prefix`; empty when none came before
    // the deadline.
    std::string ReadLineStartingWith(const std::string& prefix,
                                     std::chrono::milliseconds deadline = std::chrono::seconds(10));
    // True when the daemon closed the connection before the deadline.
    bool WaitClosed(std::chrono::milliseconds deadline = std::chrono::seconds(10));

private:
    bool Fill(std::chrono::steady_clock::time_point end);

    int fd_ = -1;
    bool closed_ = false;
    std::string buffer_;
};

// Tries to connect to `port` until the deadline; true once the daemon
// greets the connection (its loop is running then). The probe connection
// is closed cleanly and gone from the daemon when this returns.
bool WaitForGreeting(unsigned short port,
                     std::chrono::milliseconds deadline = std::chrono::seconds(20));

#endif
