#ifndef BOREALIS_HUB_RECORD_LINE_H
#define BOREALIS_HUB_RECORD_LINE_H

#include <cstddef>
#include <cstdint>
#include <string>

// One tab-separated record line: the type word, then each field followed by
// a tab, then the checksum and a newline. A line is formatted once and the
// same text goes to every client, 40 times a second, so the fields are
// printed with snprintf into the line's own buffer, never through streams.
class RecordLine {
public:
    // Starts the line with `type` and a tab; `expected_length` is reserved
    // up front (a data line is some 200 characters).
    explicit RecordLine(const char* type, std::size_t expected_length = 320);

    // Appends a decimal integer without padding.
    RecordLine& Int(std::int64_t value);
    // Appends a float as the stream defaults print it (%g, 6 significant
    // digits, "inf", "-inf"); NaN of either sign is "nan".
    RecordLine& Float(float value);
    // Appends `text` as it is.
    RecordLine& Text(const std::string& text);

    // The finished line: the fields, the checksum right-aligned in 3
    // characters, and a newline.
    std::string Finish() const;

private:
    void Append(const char* field, int length);

    std::string text_;
};

// The byte sum of `text` modulo 256: the CHK column of a record line.
unsigned Checksum(const std::string& text);

#endif
