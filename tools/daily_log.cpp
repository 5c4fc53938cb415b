#include "tools/daily_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <iostream>

#include "tools/record_csv.h"
#include "tools/vela_error.h"

namespace {

std::string SystemText() { return std::strerror(errno); }

void MakeFolder(const std::string& folder) {
    for (std::string::size_type slash = 0; slash != std::string::npos;) {
        slash = folder.find('/', slash + 1);
        ::mkdir(folder.substr(0, slash).c_str(), 0755);
    }
    struct stat info;
    if (::stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
        throw VelaError("cannot make the folder " + folder + ": " + SystemText());
}

// The UTC day of the record's SECONDS, or of now for a record without them.
std::string DayOf(const Record& record) {
    std::time_t seconds = std::time(nullptr);
    try {
        seconds = static_cast<std::time_t>(std::stoll(record.Value("SECONDS")));
    } catch (const std::exception&) {
        // No SECONDS column: the record is logged under today.
    }
    std::tm utc{};
    char day[16];
    ::gmtime_r(&seconds, &utc);
    std::strftime(day, sizeof day, "%Y-%m-%d", &utc);
    return day;
}

void WriteAll(int fd, const std::string& text, const std::string& path) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) throw VelaError("cannot write " + path + ": " + SystemText());
        done += static_cast<std::size_t>(n);
    }
}

// Cuts the file back to its last line end when a crash left a partial line.
void DropPartialLine(int fd, const std::string& path) {
    const off_t size = ::lseek(fd, 0, SEEK_END);
    char chunk[4096];
    off_t end = size;
    while (end > 0) {
        const off_t start = end > off_t(sizeof chunk) ? end - off_t(sizeof chunk) : 0;
        const ssize_t got = ::pread(fd, chunk, static_cast<std::size_t>(end - start), start);
        if (got != end - start) throw VelaError("cannot read " + path + ": " + SystemText());
        for (ssize_t i = got; i > 0; --i) {
            if (chunk[i - 1] != '\n') continue;
            end = start + i;
            if (end == size) return;
            if (::ftruncate(fd, end) != 0)
                throw VelaError("cannot repair " + path + ": " + SystemText());
            std::cerr << "vela: " << path << ": dropped a partial last line of " << size - end
                      << " bytes\n";
            return;
        }
        end = start;
    }
    if (size > 0 && ::ftruncate(fd, 0) != 0)
        throw VelaError("cannot repair " + path + ": " + SystemText());
    if (size > 0)
        std::cerr << "vela: " << path << ": dropped a partial line of " << size << " bytes\n";
}

// True when the file begins with `line`.
bool BeginsWith(int fd, const std::string& line) {
    std::string first(line.size(), '\0');
    return ::pread(fd, &first[0], first.size(), 0) == ssize_t(first.size()) && first == line;
}

}  // namespace

DailyLog::DailyLog(const std::string& folder) : folder_(folder) { MakeFolder(folder_); }

DailyLog::~DailyLog() {
    for (auto& entry : files_) ::close(entry.second.fd);
}

void DailyLog::Write(const Record& record) {
    if (record.columns.empty()) return;
    const std::string day = DayOf(record);
    DayFile& file = files_[record.type];
    if (file.day != day) {
        if (file.fd >= 0) ::close(file.fd);
        file = DayFile();
        file = Open(record.type, day, CsvHeader(record, false) + "\n");
    }
    WriteAll(file.fd, CsvLine(record, false) + "\n", file.path);
}

DailyLog::DayFile DailyLog::Open(const std::string& type, const std::string& day,
                                 const std::string& header) const {
    for (int n = 1;; ++n) {
        DayFile file{day, folder_ + "/" + day + "_" + type +
                              (n > 1 ? "." + std::to_string(n) : "") + ".csv"};
        file.fd = ::open(file.path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
        if (file.fd < 0) throw VelaError("cannot open " + file.path + ": " + SystemText());
        try {
            DropPartialLine(file.fd, file.path);
            if (::lseek(file.fd, 0, SEEK_END) == 0) WriteAll(file.fd, header, file.path);
            if (BeginsWith(file.fd, header)) return file;
        } catch (...) {
            ::close(file.fd);
            throw;
        }
        ::close(file.fd);
    }
}
