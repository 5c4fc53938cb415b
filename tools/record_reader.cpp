#include "tools/record_reader.h"

#include "borealis/hub/record_headers.h"
#include "borealis/hub/record_line.h"

namespace {

const char kDiagHeaderType[] = "DATADIAGH";

bool StartsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

// The names after the type word of a header line such as the DIAG header.
std::vector<std::string> HeaderNames(const std::string& header) {
    std::vector<std::string> names = SplitTabs(header.substr(0, header.find('\n')));
    names.erase(names.begin());
    return names;
}

// The checksum column: decimal, right-aligned in three characters.
bool ReadChecksum(const std::string& field, unsigned& value) {
    if (field.size() != 3) return false;
    const auto digits = field.find_first_not_of(' ');
    if (digits == std::string::npos ||
        field.find_first_not_of("0123456789", digits) != std::string::npos)
        return false;
    value = static_cast<unsigned>(std::stoul(field.substr(digits)));
    return true;
}

}  // namespace

std::vector<std::string> SplitTabs(const std::string& line) {
    std::vector<std::string> fields;
    std::string::size_type start = 0;
    for (std::string::size_type tab; (tab = line.find('\t', start)) != std::string::npos;
         start = tab + 1)
        fields.push_back(line.substr(start, tab - start));
    fields.push_back(line.substr(start));
    return fields;
}

std::string Record::Value(const std::string& name) const {
    for (std::size_t i = 0; i < columns.size() && i < values.size(); ++i)
        if (columns[i] == name) return values[i];
    return "";
}

RecordReader::RecordReader() : diag_names_(HeaderNames(kDiagHeader)) {}

std::optional<Record> RecordReader::Take(const std::string& line) {
    // Answers to requests, the ack line and an empty answer.
    if (line.empty() || line[0] == '<') return std::nullopt;
    if (StartsWith(line, "DATAEVENT\t") || StartsWith(line, "DATAMSG\t")) return std::nullopt;
    std::vector<std::string> fields = SplitTabs(line);
    if (fields[0] == kDiagHeaderType) {
        diag_names_.assign(fields.begin() + 1, fields.end());
        return std::nullopt;
    }
    if (!StartsWith(fields[0], "DATA") || fields.size() < 2)
        throw BadRecord("not a line of the analyzer");
    const bool header = fields[0].back() == 'H' && fields.back() == "CHK";
    if (header) {
        columns_[fields[0].substr(0, fields[0].size() - 1)].assign(fields.begin() + 1,
                                                                   fields.end() - 1);
        return std::nullopt;
    }
    return Verify(line, std::move(fields));
}

Record RecordReader::Verify(const std::string& line, std::vector<std::string> fields) const {
    unsigned checksum = 0;
    if (!ReadChecksum(fields.back(), checksum) ||
        checksum != Checksum(line.substr(0, line.rfind('\t') + 1)))
        throw BadRecord("wrong checksum");
    Record record;
    record.type = fields.front();
    record.values.assign(fields.begin() + 1, fields.end() - 1);
    const auto known = columns_.find(record.type);
    if (known != columns_.end()) {
        record.columns = known->second;
        if (record.values.size() != record.columns.size())
            throw BadRecord(record.type + " record of " + std::to_string(record.values.size()) +
                            " values, its header names " + std::to_string(record.columns.size()));
    }
    return record;
}

std::vector<std::string> RecordReader::DiagFlags(std::uint32_t diag) const {
    std::vector<std::string> flags;
    for (std::size_t bit = 0; bit < diag_names_.size() && bit < 32; ++bit)
        if (diag & (std::uint32_t{1} << bit)) flags.push_back(diag_names_[bit]);
    return flags;
}
