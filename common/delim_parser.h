#ifndef COMMON_DELIM_PARSER_H
#define COMMON_DELIM_PARSER_H

#include <string>
#include <vector>

// Cuts a stream of text into messages, each ending with one of the
// delimiters. Text after the last delimiter waits for more input; nothing is
// ever discarded.
class DelimParser {
public:
    explicit DelimParser(const std::string& delimiter);

    // With "\n" as the only delimiter the parser takes a faster path.
    void AddDelimiter(const std::string& delimiter);
    void Append(const std::string& data);

    // Moves the next whole message (delimiter included) into `message`;
    // false when the buffer holds none.
    bool GetMessage(std::string& message);
    bool GetMessage(std::string& message, std::string& delimiter_found);

    // The input not yet returned as a message.
    const std::string& GetBuffer() const { return buffer_; }

private:
    bool GetLine(std::string& message, std::string& delimiter_found);
    bool GetDelimited(std::string& message, std::string& delimiter_found);
    void TakeMessage(std::string::size_type length, std::string& message);

    std::vector<std::string> delimiters_;
    std::string buffer_;
    bool newline_mode_ = false;
};

#endif
