#ifndef BOREALIS_HUB_ANSWER_STREAM_H
#define BOREALIS_HUB_ANSWER_STREAM_H

#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>

// Thrown by an AnswerStream that would grow past its limit.
class AnswerTooLong : public std::runtime_error {
public:
    explicit AnswerTooLong(std::size_t limit);
};

// The text of one answer to a client. One request line may ask for the whole
// document thousands of times over; the answer stops (by AnswerTooLong,
// which leaves the writer at once) before it holds more than `limit` bytes,
// so the daemon's memory and time stay bounded whatever a request asks.
class AnswerStream : public std::ostream {
public:
    explicit AnswerStream(std::size_t limit);

    const std::string& str() const { return buffer_.text; }

private:
    struct Buffer : std::streambuf {
        explicit Buffer(std::size_t most) : limit(most) {}
        int_type overflow(int_type c) override;
        std::streamsize xsputn(const char* text, std::streamsize count) override;
        void Append(const char* text, std::size_t count);

        const std::size_t limit;
        std::string text;
    };

    Buffer buffer_;
};

#endif
