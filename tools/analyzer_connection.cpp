#include "tools/analyzer_connection.h"

#include <poll.h>

#include <algorithm>
#include <chrono>

#include "common/poll_processor.h"
#include "tools/stop_request.h"
#include "tools/vela_error.h"

namespace {

// The greeting ends with the names of the DIAG bits.
const char kLastGreetingLine[] = "DATADIAGH\t";

std::string Where(const std::string& host, unsigned short port) {
    return host + " port " + std::to_string(port);
}

// The first address of `host`, IPv4 preferred; throws CannotConnect.
SocketAddress AddressOf(const std::string& host, unsigned short port) {
    SocketAddress address;
    try {
        address.Resolve(host, AF_INET);
    } catch (const HostNotFound&) {
        try {
            address.Resolve(host, AF_INET6);
        } catch (const std::exception& error) {
            throw CannotConnect("cannot find " + host + ": " + error.what());
        }
    }
    address.SetPort(port);
    return address;
}

}  // namespace

template <typename Done>
void AnalyzerConnection::Serve(int timeout_ms, Done done, bool stoppable) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    while (!done() && !closed_ && !(stoppable && StopRequested())) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        if (left.count() < 0) break;
        PollProcessor::Instance().Poll(static_cast<std::int32_t>(left.count()));
    }
}

AnalyzerConnection::AnalyzerConnection(const std::string& host, unsigned short port, int timeout_ms)
    : PollItem(POLLIN, false),
      address_(AddressOf(host, port)),
      socket_(address_.GetFamily(), SOCK_STREAM, 0) {
    try {
        socket_.Connect(address_, static_cast<unsigned>(std::max(1, (timeout_ms + 999) / 1000)));
    } catch (const std::exception& error) {
        throw CannotConnect("cannot connect to " + Where(host, port) + ": " + error.what());
    }
    Register();
    Serve(timeout_ms, [this] { return greeted_; });
    if (!greeted_)
        throw CannotConnect(Where(host, port) +
                            (closed_ ? " closed the connection" : " sent no greeting") +
                            " (is it an analyzer?)");
}

AnalyzerConnection::~AnalyzerConnection() {
    try {
        if (!closed_) {
            socket_.Shutdown(SHUT_WR);
            Serve(
                1000,
                [this] {
                    lines_.clear();
                    return false;
                },
                false);
        }
    } catch (const std::exception&) {
        // Leaving anyway: the socket closes with the object.
    }
}

void AnalyzerConnection::Send(const std::string& line) {
    const std::string text = line + "\n";
    try {
        for (std::size_t sent = 0; sent < text.size();)
            sent += socket_.Send(text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
    } catch (const std::exception& error) {
        throw VelaError(std::string("the connection to the analyzer is lost: ") + error.what());
    }
}

std::optional<std::string> AnalyzerConnection::NextLine(int timeout_ms) {
    Serve(timeout_ms, [this] { return !lines_.empty(); });
    if (lines_.empty()) return std::nullopt;
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}

void AnalyzerConnection::HandleRead() {
    char buffer[65536];
    std::size_t got = 0;
    try {
        got = socket_.Recv(buffer, sizeof buffer, 0);
    } catch (const std::exception&) {
        got = 0;  // a reset: the connection is gone all the same
    }
    if (got == 0) {
        closed_ = true;
        Unregister();
        return;
    }
    parser_.Append(std::string(buffer, got));
    for (std::string message; parser_.GetMessage(message);) {
        message.pop_back();
        if (!greeted_) {
            identity_.Take(message);
            greeted_ = message.compare(0, sizeof kLastGreetingLine - 1, kLastGreetingLine) == 0;
        }
        lines_.push_back(std::move(message));
    }
}
