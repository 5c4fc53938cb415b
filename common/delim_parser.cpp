#include "common/delim_parser.h"

DelimParser::DelimParser(const std::string& delimiter) { AddDelimiter(delimiter); }

void DelimParser::AddDelimiter(const std::string& delimiter) {
    delimiters_.push_back(delimiter);
    newline_mode_ = delimiters_.size() == 1 && delimiters_.front() == "\n";
}

void DelimParser::Append(const std::string& data) { buffer_ += data; }

bool DelimParser::GetMessage(std::string& message) {
    std::string delimiter_found;
    return GetMessage(message, delimiter_found);
}

bool DelimParser::GetMessage(std::string& message, std::string& delimiter_found) {
    return newline_mode_ ? GetLine(message, delimiter_found)
                         : GetDelimited(message, delimiter_found);
}

bool DelimParser::GetLine(std::string& message, std::string& delimiter_found) {
    std::string::size_type end = buffer_.find('\n');
    if (end == std::string::npos) return false;
    TakeMessage(end + 1, message);
    delimiter_found = "\n";
    return true;
}

bool DelimParser::GetDelimited(std::string& message, std::string& delimiter_found) {
    const std::string* earliest = nullptr;
    std::string::size_type earliest_position = std::string::npos;
    for (const std::string& delimiter : delimiters_) {
        // An empty delimiter would match everywhere and yield endless empty
        // messages.
        if (delimiter.empty()) continue;
        std::string::size_type position = buffer_.find(delimiter);
        // Strictly earlier only: on a tie the delimiter added first wins.
        if (position < earliest_position) {
            earliest = &delimiter;
            earliest_position = position;
        }
    }
    if (!earliest) return false;
    delimiter_found = *earliest;
    TakeMessage(earliest_position + earliest->size(), message);
    return true;
}

void DelimParser::TakeMessage(std::string::size_type length, std::string& message) {
    message.assign(buffer_, 0, length);
    buffer_.erase(0, length);
}
