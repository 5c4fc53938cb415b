#ifndef TOOLS_RECORD_READER_H
#define TOOLS_RECORD_READER_H

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// One record the analyzer sent, its checksum verified: the type word, the
// column names of its type, and the values, the checksum left out.
struct Record {
    std::string type;                  // "DATA", "DATASTAT", ...
    std::vector<std::string> columns;  // from the type's header line; empty when it has none
    std::vector<std::string> values;

    // The value of column `name`; empty when the record has no such column.
    std::string Value(const std::string& name) const;
};

// A line that must not be trusted: a wrong checksum, a record whose values
// do not match its header, or a line that is no line of the protocol.
class BadRecord : public std::runtime_error {
public:
    explicit BadRecord(const std::string& message) : std::runtime_error(message) {}
};

// Reads the lines the analyzer sends: learns the columns of each record
// type from its header line and the DIAG bit names from theirs, and checks
// every record line against its checksum and its header.
class RecordReader {
public:
    // A reader that knows the DIAG bit names the analyzer uses, and no columns.
    RecordReader();

    // The record in `line` (without its line end); none for the lines that
    // are no records (events, messages, headers, answers). Throws BadRecord
    // for a record that fails its checks and for an unknown kind of line.
    std::optional<Record> Take(const std::string& line);
    // The names of the bits set in `diag`, lowest bit first.
    std::vector<std::string> DiagFlags(std::uint32_t diag) const;
    // The DIAG bit names, bit 0 first.
    const std::vector<std::string>& DiagNames() const { return diag_names_; }

private:
    Record Verify(const std::string& line, std::vector<std::string> fields) const;

    std::map<std::string, std::vector<std::string>> columns_;
    std::vector<std::string> diag_names_;
};

// The fields of a tab-separated line.
std::vector<std::string> SplitTabs(const std::string& line);

#endif
