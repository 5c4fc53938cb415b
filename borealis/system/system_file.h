#ifndef BOREALIS_SYSTEM_SYSTEM_FILE_H
#define BOREALIS_SYSTEM_SYSTEM_FILE_H

#include <optional>
#include <string>
#include <vector>

// The system's own small text files (host name, interfaces, zone name, PTP
// options): read whole, written whole, replaced through a ".new" file.

// The whole content of `path`; nothing when it cannot be opened.
std::optional<std::string> ReadTextFile(const std::string& path);
// The first line of `path` without its newline; nothing when the file cannot
// be opened or is empty.
std::optional<std::string> ReadFirstLine(const std::string& path);
// Makes `text` the whole content of `path`; false when it cannot be written.
bool WriteTextFile(const std::string& path, const std::string& text);
// Writes `text` to path + ".new", then removes `path`, links the new file
// under its name and removes the ".new" name, each step only when the one
// before succeeded, so that no reader finds the file half written. Failures
// are not reported: the ".new" file stays beside an old file that could not
// be replaced.
void ReplaceFile(const std::string& path, const std::string& text);

// The lines of `text` without their newlines; a last line without one counts.
std::vector<std::string> SplitLines(const std::string& text);
bool StartsWith(const std::string& text, const std::string& prefix);

#endif
