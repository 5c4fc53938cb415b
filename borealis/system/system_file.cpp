#include "borealis/system/system_file.h"

#include <unistd.h>

#include <fstream>
#include <iterator>
#include <sstream>

std::optional<std::string> ReadTextFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::optional<std::string> ReadFirstLine(const std::string& path) {
    std::ifstream in(path);
    std::string line;
    if (!std::getline(in, line)) return std::nullopt;
    return line;
}

bool WriteTextFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    return static_cast<bool>(out);
}

void ReplaceFile(const std::string& path, const std::string& text) {
    const std::string new_path = path + ".new";
    if (!WriteTextFile(new_path, text)) return;
    if (::unlink(path.c_str()) == 0 && ::link(new_path.c_str(), path.c_str()) == 0)
        ::unlink(new_path.c_str());
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

bool StartsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}
