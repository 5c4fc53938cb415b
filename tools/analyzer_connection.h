#ifndef TOOLS_ANALYZER_CONNECTION_H
#define TOOLS_ANALYZER_CONNECTION_H

#include <deque>
#include <optional>
#include <string>

#include "common/delim_parser.h"
#include "common/poll_item.h"
#include "common/socket.h"
#include "tools/analyzer_identity.h"

// A client connection to the analyzer's daemon, served by the poll loop:
// the lines it receives wait in arrival order until they are taken.
class AnalyzerConnection : public PollItem {
public:
    // Connects to `host` (a name or an address) on `port` and waits for the
    // greeting, each within `timeout_ms`; throws CannotConnect.
    AnalyzerConnection(const std::string& host, unsigned short port, int timeout_ms);
    // Leaves politely: stops sending and lets the daemon close its end first,
    // so that it has no reset to report.
    ~AnalyzerConnection() override;

    // The identity the greeting told.
    const AnalyzerIdentity& Identity() const { return identity_; }
    // Sends `line` and a line end; throws VelaError when the connection is lost.
    void Send(const std::string& line);
    // The next line received, greeting lines included, without its line end;
    // none when none came within `timeout_ms` (the poll loop runs meanwhile),
    // when the connection is closed, or once a stop was requested.
    std::optional<std::string> NextLine(int timeout_ms);
    // True once the daemon closed the connection or it failed.
    bool Closed() const { return closed_; }

    int GetFd() override { return socket_.GetFd(); }
    void HandleRead() override;
    void HandleHangUp() override { HandleRead(); }
    void HandleError() override { HandleRead(); }
    const char* GetName() override { return "AnalyzerConnection"; }

private:
    // Runs the poll loop until `done` holds, the connection closes or
    // `timeout_ms` passed; with `stoppable`, also once a stop was requested.
    template <typename Done>
    void Serve(int timeout_ms, Done done, bool stoppable = true);

    SocketAddress address_;
    Socket socket_;
    DelimParser parser_{"\n"};
    std::deque<std::string> lines_;
    AnalyzerIdentity identity_;
    bool greeted_ = false;
    bool closed_ = false;
};

#endif
