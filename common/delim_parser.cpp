#include "common/delim_parser.h"

#include <algorithm>

DelimParser::DelimParser(const std::string& delimiter) { AddDelimiter(delimiter); }

void DelimParser::AddDelimiter(const std::string& delimiter) {
    delimiters_.push_back(delimiter);
    longest_ = std::max(longest_, delimiter.size());
    newline_mode_ = delimiters_.size() == 1 && delimiters_.front() == "\n";
    // The new delimiter may occur in what was searched for the others.
    searched_ = 0;
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
    std::string::size_type end = buffer_.find('\n', searched_);
    if (end == std::string::npos) {
        searched_ = buffer_.size();
        return false;
    }
    TakeMessage(end + 1, message);
    delimiter_found = "\n";
    return true;
}

bool DelimParser::GetDelimited(std::string& message, std::string& delimiter_found) {
    const std::string::size_type start = ResumePosition();
    const std::string* earliest = nullptr;
    std::string::size_type earliest_position = std::string::npos;
    for (const std::string& delimiter : delimiters_) {
        // An empty delimiter would match everywhere and yield endless empty
        // messages.
        if (delimiter.empty()) continue;
        std::string::size_type position = buffer_.find(delimiter, start);
        // Strictly earlier only: on a tie the delimiter added first wins.
        if (position < earliest_position) {
            earliest = &delimiter;
            earliest_position = position;
        }
    }
    if (!earliest) {
        searched_ = buffer_.size();
        return false;
    }
    delimiter_found = *earliest;
    TakeMessage(earliest_position + earliest->size(), message);
    return true;
}

// A delimiter may have begun in the last bytes searched and be completed by
// text appended since, so the search backs up by all but one byte of the
// longest delimiter.
std::string::size_type DelimParser::ResumePosition() const {
    return searched_ + 1 > longest_ ? searched_ + 1 - longest_ : 0;
}

void DelimParser::TakeMessage(std::string::size_type length, std::string& message) {
    message.assign(buffer_, 0, length);
    buffer_.erase(0, length);
    searched_ = 0;
}
