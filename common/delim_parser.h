#ifndef COMMON_DELIM_PARSER_H
#define COMMON_DELIM_PARSER_H

#include <cstddef>
#include <string>
#include <vector>

// Cuts a stream of text into messages, each ending with one of the
// delimiters. Text after the last delimiter waits for more input; nothing is
// ever discarded. Each byte is searched about once however long a message
// grows, so a peer that never sends a delimiter costs linear time.
class DelimParser {
public:
    // A parser with `delimiter` as its only delimiter.
    explicit DelimParser(const std::string& delimiter);

    // Adds a delimiter; with "\n" as the only one the parser takes a faster
    // path. An empty delimiter never matches.
    void AddDelimiter(const std::string& delimiter);
    // Appends received text to the buffer; never fails.
    void Append(const std::string& data);

    // Moves the next whole message (delimiter included) into `message`;
    // false, with the buffer untouched, when it holds none.
    bool GetMessage(std::string& message);
    // The same, also naming the delimiter that ended the message; on equal
    // positions the delimiter added first wins.
    bool GetMessage(std::string& message, std::string& delimiter_found);

    // The input not yet returned as a message.
    const std::string& GetBuffer() const { return buffer_; }

private:
    bool GetLine(std::string& message, std::string& delimiter_found);
    bool GetDelimited(std::string& message, std::string& delimiter_found);
    std::string::size_type ResumePosition() const;
    void TakeMessage(std::string::size_type length, std::string& message);

    std::vector<std::string> delimiters_;
    std::string::size_type longest_ = 0;
    std::string buffer_;
    // The first bytes of the buffer, searched already without a match.
    std::string::size_type searched_ = 0;
    bool newline_mode_ = false;
};

#endif
