#include "sim/frame_codec.h"

namespace {

constexpr std::size_t kHeaderBytes = 12;

void PutLittle(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

std::uint16_t Little16(const std::string& in, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(in[at]) |
                                      static_cast<unsigned char>(in[at + 1]) << 8);
}

}  // namespace

std::string EncodeFrame(const Frame& frame, const timespec& arrival) {
    std::string out;
    out.reserve(kHeaderBytes + 2 * frame.words.size());
    PutLittle(out, static_cast<std::uint32_t>(arrival.tv_sec), 4);
    PutLittle(out, static_cast<std::uint32_t>(arrival.tv_nsec), 4);
    PutLittle(out, frame.code, 2);
    PutLittle(out, static_cast<std::uint32_t>(frame.words.size()), 2);
    for (std::uint16_t word : frame.words) PutLittle(out, word, 2);
    return out;
}

std::vector<Frame> DecodeFrames(const std::string& packet) {
    std::vector<Frame> frames;
    std::size_t at = 0;
    while (packet.size() - at >= kHeaderBytes) {
        Frame frame;
        frame.code = Little16(packet, at + 8);
        std::size_t length = Little16(packet, at + 10);
        if (packet.size() - at - kHeaderBytes < 2 * length) break;
        for (std::size_t i = 0; i < length; ++i)
            frame.words.push_back(Little16(packet, at + kHeaderBytes + 2 * i));
        frames.push_back(std::move(frame));
        at += kHeaderBytes + 2 * length;
    }
    return frames;
}
