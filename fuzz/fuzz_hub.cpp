#include "fuzz/fuzz_hub.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "common/errno_error.h"
#include "common/poll_processor.h"
#include "sim/root_builder.h"
#include "sim/unix_socket.h"

namespace {

// Loop rounds of 10 ms after which a read the device has not taken is a hang.
const int kMaxRounds = 500;

int AcceptOpener(int listener) {
    const int fd = AcceptUnix(listener);
    if (fd < 0) throw ErrnoError("fuzz: a device was not opened");
    return fd;
}

// Bytes sent on `fd` that its peer has not read yet.
int Unread(int fd) {
    int count = 0;
    if (::ioctl(fd, SIOCOUTQ, &count) != 0) throw ErrnoError("fuzz: SIOCOUTQ");
    return count;
}

// A TCP listener on the loopback address, for the client connections'
// far ends; `port` receives its port.
int ListenLoopback(unsigned short& port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(fd, 16) != 0 ||
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw ErrnoError("fuzz: cannot listen on the loopback address");
    port = ntohs(address.sin_port);
    return fd;
}

}  // namespace

FuzzHub& FuzzHub::Instance() {
    static FuzzHub hub;
    return hub;
}

FuzzHub::FuzzHub() : far_address_("127.0.0.1") {
    // In memory when the machine has it: the hub rewrites files on every
    // configuration read.
    std::string root = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    root += "/borealis-fuzz-XXXXXX";
    if (!::mkdtemp(&root[0])) throw ErrnoError("fuzz: cannot make a root");
    root_ = root;
    BuildRoot(root_);
    dsp_listener_ = ListenUnix(Path("/dev/dsp4410"), SOCK_SEQPACKET);
    mirror_listener_ = ListenUnix(Path("/dev/mirror4410"), SOCK_SEQPACKET);
    button_listener_ = ListenUnix(Path("/dev/net_btn"), SOCK_SEQPACKET);
    platform_ = std::make_unique<SimPlatform>(root_, 0);
    hub_ = std::make_unique<Borealis>(*platform_, false, false);
    dsp_ = AcceptOpener(dsp_listener_);
    mirror_ = AcceptOpener(mirror_listener_);
    button_ = AcceptOpener(button_listener_);
    mirror_thread_ = std::thread([this] { AnswerMirror(); });
    hub_->ReadConfiguration();
    DeviceReads(std::string(12, '\0'));  // the first read after opening is thrown away

    unsigned short port = 0;
    far_end_ = ListenLoopback(port);
    far_address_.SetPort(port);
    clients_ = std::make_unique<SocketServer>("\n", AF_INET);
    clients_->Listen(0);
    clients_->AddListener(hub_.get());
}

FuzzHub::~FuzzHub() {
    clients_.reset();
    hub_.reset();  // closes the devices, which ends the mirror's thread
    mirror_thread_.join();
    for (int fd :
         {dsp_, mirror_, button_, dsp_listener_, mirror_listener_, button_listener_, far_end_})
        ::close(fd);
    std::filesystem::remove_all(root_);
}

void FuzzHub::ClientReads(const std::string& data, const std::function<void()>& meanwhile) {
    for (int end; (end = ::accept(far_end_, nullptr, nullptr)) >= 0;) ::close(end);
    SocketClient* client = clients_->Connect(far_address_, 1);
    try {
        client->HandleData(data);
    } catch (const std::exception& e) {
        std::cout << "SocketClient::HandleRead(): Got exception " << e.what() << std::endl;
        client->Close();
    }
    if (meanwhile) meanwhile();
    client->Close();
    PollProcessor::Instance().Poll(0);  // what the hub queued for its devices goes out
    Discard(dsp_);
}

void FuzzHub::DeviceReads(const std::string& packet) {
    if (::send(dsp_, packet.data(), packet.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(packet.size()))
        throw ErrnoError("fuzz: cannot send a read");
    for (int round = 0; Unread(dsp_) > 0; ++round) {
        if (round == kMaxRounds) {
            std::fputs("fuzz: the signal processor's read was never taken\n", stderr);
            std::abort();
        }
        PollProcessor::Instance().Poll(10);
    }
    Discard(dsp_);
}

void FuzzHub::Discard(int fd) {
    char bytes[65536];
    while (::recv(fd, bytes, sizeof bytes, MSG_DONTWAIT) > 0) {
    }
}

// The mirror device answers every status read with a motor at rest, and
// takes every command.
void FuzzHub::AnswerMirror() {
    ::fcntl(mirror_, F_SETFL, ::fcntl(mirror_, F_GETFL) & ~O_NONBLOCK);
    char packet[256];
    for (ssize_t count; (count = ::recv(mirror_, packet, sizeof packet, 0)) > 0;)
        if (count == 1 && packet[0] == '?') ::send(mirror_, "0\n", 2, MSG_NOSIGNAL);
}
