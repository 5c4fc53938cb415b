#include "tests/e2e/unified_diff.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

struct Edit {
    char kind;                       // ' ', '-' or '+'
    std::size_t old_line, new_line;  // positions before this edit, from 0
    const std::string* text;
};

// The shortest edit script, from a table of longest common subsequences;
// transcripts are small enough for the quadratic table.
std::vector<Edit> EditScript(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    std::vector<std::vector<std::size_t>> common(a.size() + 1,
                                                 std::vector<std::size_t>(b.size() + 1, 0));
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            common[i][j] = a[i] == b[j] ? common[i + 1][j + 1] + 1
                                        : std::max(common[i + 1][j], common[i][j + 1]);
    std::vector<Edit> edits;
    std::size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            edits.push_back({' ', i, j, &a[i]});
            ++i, ++j;
        } else if (j == b.size() || (i < a.size() && common[i + 1][j] >= common[i][j + 1])) {
            edits.push_back({'-', i, j, &a[i]});
            ++i;
        } else {
            edits.push_back({'+', i, j, &b[j]});
            ++j;
        }
    }
    return edits;
}

// "a,b": the first line of a hunk's side (the line before it when the side
// is empty) and its count.
std::string Range(std::size_t first, std::size_t count) {
    return std::to_string(count ? first + 1 : first) + "," + std::to_string(count);
}

}  // namespace

std::string UnifiedDiff(const std::string& expected, const std::string& actual, int context) {
    const std::vector<std::string> a = Lines(expected), b = Lines(actual);
    const std::vector<Edit> edits = EditScript(a, b);
    std::vector<std::size_t> changes;
    for (std::size_t k = 0; k < edits.size(); ++k)
        if (edits[k].kind != ' ') changes.push_back(k);
    const std::size_t reach = static_cast<std::size_t>(context);
    std::ostringstream out;
    for (std::size_t c = 0; c < changes.size(); ++c) {
        // One hunk: changes whose contexts meet, and the context around them.
        const std::size_t first = changes[c];
        while (c + 1 < changes.size() && changes[c + 1] - changes[c] <= 2 * reach + 1) ++c;
        const std::size_t begin = first > reach ? first - reach : 0;
        const std::size_t end = std::min(edits.size(), changes[c] + 1 + reach);
        std::size_t old_count = 0, new_count = 0;
        for (std::size_t k = begin; k < end; ++k) {
            old_count += edits[k].kind != '+';
            new_count += edits[k].kind != '-';
        }
        out << "@@ -" << Range(edits[begin].old_line, old_count) << " +"
            << Range(edits[begin].new_line, new_count) << " @@\n";
        for (std::size_t k = begin; k < end; ++k) out << edits[k].kind << *edits[k].text << "\n";
    }
    return out.str();
}
