#ifndef TOOLS_DAILY_LOG_H
#define TOOLS_DAILY_LOG_H

#include <map>
#include <string>

#include "tools/record_reader.h"

// Records kept in daily CSV files under one folder: one file per record type
// and day (UTC, from the record's SECONDS), named YYYY-MM-DD_TYPE.csv, the
// column names on its first line. Each record is one write of one whole
// line to a file opened for appending, so a crash leaves at most a partial
// last line, which is dropped when the file is opened again. A file of that
// name whose header differs (another version of the analyzer) is left
// alone: the records go to YYYY-MM-DD_TYPE.2.csv, and so on.
class DailyLog {
public:
    // Logs into `folder`, made with its parents when missing; throws
    // VelaError when that fails.
    explicit DailyLog(const std::string& folder);
    ~DailyLog();
    DailyLog(const DailyLog&) = delete;
    DailyLog& operator=(const DailyLog&) = delete;

    // Appends the record to the file of its type and day, opening that file
    // first when the day changed; a record of a type without columns is not
    // logged. Throws VelaError when the file cannot be opened or written.
    void Write(const Record& record);

private:
    struct DayFile {
        std::string day;
        std::string path;
        int fd = -1;
    };

    DayFile Open(const std::string& type, const std::string& day, const std::string& header) const;

    std::string folder_;
    std::map<std::string, DayFile> files_;  // by record type
};

#endif
