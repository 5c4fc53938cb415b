#ifndef TESTS_E2E_UNIFIED_DIFF_H
#define TESTS_E2E_UNIFIED_DIFF_H

#include <string>

// The line differences from `expected` to `actual` in unified form: hunks
// headed "@@ -a,b +c,d @@", lines kept (" "), removed ("-") and added ("+"),
// with `context` unchanged lines around each change. Empty when the texts
// are equal.
std::string UnifiedDiff(const std::string& expected, const std::string& actual, int context = 3);

#endif
