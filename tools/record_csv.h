#ifndef TOOLS_RECORD_CSV_H
#define TOOLS_RECORD_CSV_H

#include <string>

#include "tools/record_reader.h"

// Records as CSV: with `with_type` each line begins with the record's type
// word, so that types can share one stream; without it a file holds one
// type. A value that holds a comma, a quote or a line end is quoted.

// The header line of the record's type: its header word (the type with H
// appended) when `with_type`, then the column names.
std::string CsvHeader(const Record& record, bool with_type);
// The record's line: its type word when `with_type`, then its values.
std::string CsvLine(const Record& record, bool with_type);

#endif
