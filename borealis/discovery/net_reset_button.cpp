#include "borealis/discovery/net_reset_button.h"

#include <iostream>

#include "borealis/platform/platform.h"

const char* const NetResetButtonDevice::kDefaultPath = "/dev/net_btn";

NetResetButtonDevice::NetResetButtonDevice(Platform& platform, const std::string& path)
    : PollItem(POLLIN) {
    device_.SetFd(platform.OpenDevice(path));
}

NetResetButtonDevice::~NetResetButtonDevice() { Unregister(); }

NetResetButtonDevice::Listener* NetResetButtonDevice::SetListener(Listener* listener) {
    Listener* previous = listener_;
    listener_ = listener;
    return previous;
}

void NetResetButtonDevice::HandleRead() {
    // The button must keep working after a bad read: the error is printed
    // and the next readiness event reads again.
    try {
        ReadEvents();
    } catch (const std::exception& error) {
        std::cout << "NetResetButtonDevice::HandleRead(): ERROR: " << error.what() << std::endl;
    }
}

void NetResetButtonDevice::ReadEvents() {
    const std::size_t count = device_.Read(buffer_.data(), buffer_.size());
    for (std::size_t i = 0; i < count; ++i) Deliver(buffer_[i]);
}

void NetResetButtonDevice::Deliver(char event) {
    if (!listener_) return;
    switch (event) {
    case 'D': listener_->GotDown(); break;
    case 'U': listener_->GotUp(); break;
    case 'L': listener_->GotLong(); break;
    default: break;  // line ends and other bytes carry no event
    }
}
