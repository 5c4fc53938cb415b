#ifndef TOOLS_WATCH_VIEW_H
#define TOOLS_WATCH_VIEW_H

#include <optional>
#include <string>
#include <vector>

#include "tools/analyzer_identity.h"
#include "tools/record_reader.h"

// What the watch view shows: the analyzer's identity and the connection,
// the latest data record with its DIAG flags, and the record rate, rendered
// as one frame of text. The rate counts the data records of each second of
// the analyzer's own time (their SECONDS), so that it is the analyzer's rate
// however the network bunches them.
class WatchView {
public:
    // A view of the analyzer at `address` ("localhost port 4410").
    explicit WatchView(std::string address);

    // The state of the connection, as shown ("connected", ...).
    void SetConnection(const std::string& state) { connection_ = state; }
    void SetIdentity(const AnalyzerIdentity& identity) { identity_ = identity; }
    // Takes a data record; records of other types are ignored. The reader
    // names the DIAG bits.
    void Take(const Record& record, const RecordReader& reader);
    // Counts a line that failed its checks.
    void CountBadLine() { ++bad_lines_; }

    // The frame: one line of text per screen line, each ending in a line end.
    // With `highlight` the set DIAG flags stand out in reverse video and the
    // others are dimmed (ANSI attributes); without, set flags carry a "*".
    std::string Render(bool highlight) const;

private:
    std::string Measurement(const std::string& column, const char* format) const;
    std::string RecordLine() const;
    std::string Flags(bool highlight) const;

    std::string address_;
    std::string connection_ = "connecting";
    AnalyzerIdentity identity_;
    std::optional<Record> last_;
    std::vector<std::string> diag_names_;
    long long second_ = -1;   // the SECONDS of the records being counted
    int count_ = 0;           // data records so far in that second
    int second_changes_ = 0;  // the first second counted is a partial one
    int rate_ = -1;           // records in the last whole second; -1 unknown
    unsigned long bad_lines_ = 0;
};

#endif
