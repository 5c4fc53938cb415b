#ifndef TOOLS_RECORD_JSON_H
#define TOOLS_RECORD_JSON_H

#include <string>

#include "tools/record_reader.h"

// The record as one JSON object on one line: "type", then each column by
// name in the record's order (numbers as JSON numbers, "nan" and "inf" as
// null, any other text as a string), with "DIAGFLAGS", the names of the set
// DIAG bits, right after DIAG. A type without a header gives its values as
// the array "values".
std::string JsonLine(const Record& record, const RecordReader& reader);

// `text` as a JSON string.
std::string JsonQuoted(const std::string& text);

#endif
