#ifndef SIM_CONTROL_SERVER_H
#define SIM_CONTROL_SERVER_H

#include <functional>
#include <map>
#include <string>

#include "sim/event_loop.h"

// The control socket: a stream socket serving any number of clients, one
// command per line, each answered in turn: a client's next command waits
// until the one before has been answered. A client that shuts down its
// sending side still gets the answers to what it sent.
class ControlServer {
public:
    // Takes the answer text of one command, line ends included.
    using Reply = std::function<void(const std::string& answer)>;
    // Carries out one command line (without its line end) and calls the
    // reply with its answer, at once or later from the loop.
    using Executor = std::function<void(const std::string& line, Reply reply)>;

    // Listens at `path`; throws ErrnoError when it cannot.
    ControlServer(EventLoop& loop, const std::string& path, Executor executor);
    // Closes every client and removes the socket file.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

private:
    struct Client {
        unsigned long serial = 0;  // tells a client from a later one on the same descriptor
        std::string input;
        std::string output;
        bool ending = false;    // nothing more will be read, only written
        bool waiting = false;   // a command's answer is still to come
        bool too_long = false;  // the input ended in a line too long to take
    };
    void Accept();
    void Serve(int fd, short revents);
    void Read(int fd, Client& client);
    // Carries out the client's complete lines until one has to wait.
    void RunCommands(int fd);
    void Answered(int fd, unsigned long serial, const std::string& answer);
    void Write(int fd, Client& client);
    void Drop(int fd);

    EventLoop& loop_;
    std::string path_;
    int listener_;
    Executor executor_;
    std::map<int, Client> clients_;
    unsigned long next_serial_ = 1;
};

#endif
