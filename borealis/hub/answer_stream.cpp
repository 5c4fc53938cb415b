#include "borealis/hub/answer_stream.h"

AnswerTooLong::AnswerTooLong(std::size_t limit)
    : std::runtime_error("answer longer than " + std::to_string(limit) + " bytes") {}

AnswerStream::AnswerStream(std::size_t limit) : std::ostream(nullptr), buffer_(limit) {
    rdbuf(&buffer_);
    // The buffer's exception must reach the caller instead of only failing
    // the stream, or the writers would go on walking the document for
    // nothing.
    exceptions(std::ios::badbit);
}

AnswerStream::Buffer::int_type AnswerStream::Buffer::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char one = traits_type::to_char_type(c);
    Append(&one, 1);
    return c;
}

std::streamsize AnswerStream::Buffer::xsputn(const char* text, std::streamsize count) {
    Append(text, static_cast<std::size_t>(count));
    return count;
}

void AnswerStream::Buffer::Append(const char* data, std::size_t count) {
    if (count > limit - text.size()) throw AnswerTooLong(limit);
    text.append(data, count);
}
