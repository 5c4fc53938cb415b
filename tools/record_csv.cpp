#include "tools/record_csv.h"

#include <vector>

namespace {

std::string Field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

// `fields` joined by commas, after `first` when `with_first`.
std::string Join(const std::string& first, const std::vector<std::string>& fields,
                 bool with_first) {
    std::string line = with_first ? Field(first) + (fields.empty() ? "" : ",") : "";
    for (std::size_t i = 0; i < fields.size(); ++i) line += (i ? "," : "") + Field(fields[i]);
    return line;
}

}  // namespace

std::string CsvHeader(const Record& record, bool with_type) {
    return Join(record.type + "H", record.columns, with_type);
}

std::string CsvLine(const Record& record, bool with_type) {
    return Join(record.type, record.values, with_type);
}
