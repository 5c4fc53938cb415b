#ifndef SIM_CONTROL_SERVER_H
#define SIM_CONTROL_SERVER_H

#include <functional>
#include <map>
#include <string>

#include "sim/event_loop.h"

// The control socket: a stream socket serving any number of clients, one
// command per line, each answered in turn. A client that shuts down its
// sending side still gets the answers to what it sent.
class ControlServer {
public:
    // Turns one command line (without its line end) into its answer text,
    // line ends included.
    using Executor = std::function<std::string(const std::string& line)>;

    // Listens at `path`; throws ErrnoError when it cannot.
    ControlServer(EventLoop& loop, const std::string& path, Executor executor);
    // Closes every client and removes the socket file.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

private:
    struct Client {
        std::string input;
        std::string output;
        bool ending = false;  // nothing more will be read, only written
    };
    void Accept();
    void Serve(int fd, short revents);
    void Read(int fd, Client& client);
    void Write(int fd, Client& client);
    void Drop(int fd);

    EventLoop& loop_;
    std::string path_;
    int listener_;
    Executor executor_;
    std::map<int, Client> clients_;
};

#endif
