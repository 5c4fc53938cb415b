#include "borealis/hub/record_line.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace {

// Room for any 64-bit integer or %g float, with its sign and exponent.
constexpr std::size_t kFieldBuffer = 32;

}  // namespace

RecordLine::RecordLine(const char* type, std::size_t expected_length) {
    text_.reserve(expected_length);
    text_ += type;
    text_ += '\t';
}

RecordLine& RecordLine::Int(std::int64_t value) {
    char field[kFieldBuffer];
    Append(field, std::snprintf(field, sizeof field, "%" PRId64, value));
    return *this;
}

RecordLine& RecordLine::Float(float value) {
    // The C library prints a NaN with its sign bit set as "-nan"; the
    // records show every NaN alike.
    if (std::isnan(value)) {
        text_ += "nan\t";
        return *this;
    }
    char field[kFieldBuffer];
    Append(field, std::snprintf(field, sizeof field, "%g", static_cast<double>(value)));
    return *this;
}

RecordLine& RecordLine::Text(const std::string& text) {
    text_ += text;
    text_ += '\t';
    return *this;
}

std::string RecordLine::Finish() const {
    std::string line;
    line.reserve(text_.size() + 4);
    line += text_;
    char chk[8];
    std::snprintf(chk, sizeof chk, "%3u\n", Checksum(text_));
    line += chk;
    return line;
}

void RecordLine::Append(const char* field, int length) {
    if (length > 0) {
        text_.append(field, static_cast<std::size_t>(length));
    }
    text_ += '\t';
}

unsigned Checksum(const std::string& text) {
    unsigned sum = 0;
    for (unsigned char byte : text) {
        sum += byte;
    }
    return sum % 256;
}
