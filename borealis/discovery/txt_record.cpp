#include "borealis/discovery/txt_record.h"

std::string EncodeTxtRecord(const TxtMap& txt) {
    std::string record;
    for (const auto& entry : txt) {
        const std::string text = entry.first + "=" + entry.second;
        if (text.size() <= 1) continue;
        record += static_cast<char>(text.size() % 256);
        record += text;
    }
    return record;
}

TxtMap DecodeTxtRecord(const unsigned char* data, std::size_t length) {
    TxtMap txt;
    for (std::size_t pos = 0; pos < length;) {
        const std::size_t size = data[pos++];
        if (size > length - pos) break;
        const std::string text(reinterpret_cast<const char*>(data + pos), size);
        pos += size;
        if (text.empty()) continue;  // the one empty string of an empty record
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos)
            txt[text];
        else
            txt[text.substr(0, equals)] = text.substr(equals + 1);
    }
    return txt;
}
