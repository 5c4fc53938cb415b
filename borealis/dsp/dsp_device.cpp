#include "borealis/dsp/dsp_device.h"

#include <poll.h>

#include <exception>
#include <iostream>
#include <sstream>

#include "borealis/dsp/dsp_messages.h"
#include "borealis/platform/platform.h"

// Frames are read and queued as 16-bit words in the order the processor and
// its driver use: little-endian.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "The signal-processor framing assumes a little-endian host"
#endif

namespace {

// The header is the arrival time (two 32-bit integers), the code and the
// payload length: six words.
const std::size_t kHeaderWords = 6;

std::uint32_t HeaderLong(const std::uint16_t* words) {
    // Little-endian 32-bit integer: low word first (not the payload order).
    return static_cast<std::uint32_t>(words[0]) | (static_cast<std::uint32_t>(words[1]) << 16);
}

}  // namespace

const char* const DSPDevice::kDefaultPath = "/dev/dsp4410";

std::string FormatUnknownMessage(std::uint16_t cmd, std::size_t length) {
    std::ostringstream line;
    line << "Got Unknown Message: cmd=0x" << std::hex << cmd << " len=0x" << length << "\n";
    return line.str();
}

DSPDevice::DSPDevice(Platform& platform, const std::string& path)
    : PollItem(POLLIN), platform_(platform), receive_(kBufferWords, 0) {
    device_.SetFd(platform_.OpenDevice(path));
    transmit_.reserve(kBufferWords);
}

DSPDevice::~DSPDevice() { Unregister(); }

void DSPDevice::Close() {
    Unregister();
    device_.Close();
}

DSPDevice::Listener* DSPDevice::SetListener(Listener* listener) {
    Listener* previous = listener_;
    listener_ = listener;
    return previous;
}

void DSPDevice::Send(std::uint16_t cmd, const std::uint16_t* words, std::uint16_t count) {
    // The arrival time of an outgoing frame is zero.
    const std::uint16_t header[kHeaderWords] = {0, 0, 0, 0, cmd, count};
    transmit_.insert(transmit_.end(), header, header + kHeaderWords);
    if (count) transmit_.insert(transmit_.end(), words, words + count);
    SetEvents(POLLIN | POLLOUT);
}

void DSPDevice::StartCpldClock() { platform_.StartCpldClock(device_.GetFd()); }

void DSPDevice::SetClockYz(std::uint32_t value) { platform_.SetClockYz(device_.GetFd(), value); }

void DSPDevice::HandleWrite() {
    try {
        WriteQueue();
    } catch (const std::exception& error) {
        std::cout << "DSPDevice::HandleWrite(): ERROR: " << error.what() << std::endl;
    }
}

void DSPDevice::WriteQueue() {
    if (!transmit_.empty()) {
        // The whole queue in one write; a partial write leaves the rest of
        // its frame at the front, so frames are never interleaved.
        std::size_t written = device_.Write(transmit_.data(), transmit_.size() * 2);
        transmit_.erase(transmit_.begin(), transmit_.begin() + written / 2);
    }
    SetEvents(transmit_.empty() ? POLLIN : POLLIN | POLLOUT);
}

void DSPDevice::HandleRead() {
    try {
        ReadFrames();
    } catch (const std::exception& error) {
        std::cout << "DSPDevice::HandleRead(): ERROR: " << error.what() << std::endl;
    }
}

void DSPDevice::ReadFrames() {
    std::size_t bytes = device_.Read(receive_.data(), (receive_.size() * 2) & ~std::size_t(1));
    if (bytes == 0) return;
    // The driver's first read after opening holds stale data.
    if (!first_read_seen_) {
        first_read_seen_ = true;
        return;
    }
    ParseFrames(bytes / 2);
}

void DSPDevice::ParseFrames(std::size_t words) {
    // Each read is parsed on its own: an incomplete tail is dropped.
    std::size_t at = 0;
    while (words - at >= kHeaderWords) {
        const std::uint16_t* frame = receive_.data() + at;
        std::size_t frame_words = kHeaderWords + frame[5];
        if (frame_words > words - at) return;
        if (listener_) DeliverFrame(frame);
        at += frame_words;
    }
}

void DSPDevice::DeliverFrame(const std::uint16_t* frame) {
    DSPFrame view;
    view.seconds = HeaderLong(frame);
    view.nanoseconds = HeaderLong(frame + 2);
    view.cmd = frame[4];
    view.length = frame[5];
    view.words = frame + kHeaderWords;
    listener_->GotMessage(view.seconds, view.nanoseconds, view.cmd, view.words, view.length);
    // GotMessage may have taken the listener away.
    if (listener_) DecodeDspMessage(view, *listener_);
}
