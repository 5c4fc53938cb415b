#ifndef SIM_FILE_UTIL_H
#define SIM_FILE_UTIL_H

#include <sys/types.h>

#include <string>

// Makes `path` and the folders above it; throws ErrnoError when one cannot
// be made.
void MakeFolders(const std::string& path);

// Creates the file at `path` with `content` and permissions `mode`, making
// its folders; a file already there is kept as it is. Throws ErrnoError when
// the file cannot be written.
void WriteNewFile(const std::string& path, const std::string& content, mode_t mode = 0644);

// The whole content of the file at `path`; false when it cannot be read.
bool ReadWholeFile(const std::string& path, std::string& content);

bool IsFolder(const std::string& path);

#endif
