#include "tools/record_json.h"

#include <cstdio>
#include <regex>

std::string JsonQuoted(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", c);
            out += escape;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

namespace {

std::string Value(const std::string& text) {
    static const std::regex number("-?(0|[1-9][0-9]*)(\\.[0-9]+)?([eE][-+]?[0-9]+)?");
    if (std::regex_match(text, number)) return text;
    if (text == "nan" || text == "-nan" || text == "inf" || text == "-inf") return "null";
    return JsonQuoted(text);
}

std::string FlagList(const std::string& diag, const RecordReader& reader) {
    std::string list = "[";
    try {
        for (const auto& flag : reader.DiagFlags(static_cast<std::uint32_t>(std::stoul(diag))))
            list += (list.size() > 1 ? "," : "") + JsonQuoted(flag);
    } catch (const std::exception&) {
        // A DIAG that is no number sets no flags.
    }
    return list + "]";
}

}  // namespace

std::string JsonLine(const Record& record, const RecordReader& reader) {
    std::string line = "{\"type\":" + JsonQuoted(record.type);
    if (record.columns.empty()) {
        line += ",\"values\":[";
        for (std::size_t i = 0; i < record.values.size(); ++i)
            line += (i ? "," : "") + Value(record.values[i]);
        return line + "]}";
    }
    for (std::size_t i = 0; i < record.values.size(); ++i) {
        line += "," + JsonQuoted(record.columns[i]) + ":" + Value(record.values[i]);
        if (record.columns[i] == "DIAG")
            line += ",\"DIAGFLAGS\":" + FlagList(record.values[i], reader);
    }
    return line + "}";
}
