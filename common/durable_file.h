#ifndef COMMON_DURABLE_FILE_H
#define COMMON_DURABLE_FILE_H

#include <string>

// Replaces the file at `path` with `text` so that a crash or a power loss at
// any moment leaves either the old file or the new one, never a part of
// either: the text goes to `path` + ".new" in the same folder, is flushed to
// the disk, renamed over the old file, and the folder is flushed so that the
// rename itself lasts. False (the old file untouched, no temporary left) when
// any step fails.
bool WriteFileDurably(const std::string& path, const std::string& text);

#endif
