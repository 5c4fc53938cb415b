#ifndef TESTS_SUPPORT_TEMP_ROOT_H
#define TESTS_SUPPORT_TEMP_ROOT_H

#include <string>

// A fresh temporary directory for one test, removed with everything in it
// when the object goes away. With `simulate` set it holds the folders of a
// simulated analyzer's root (a SimPlatform or a child's BOREALIS_ROOT).
class TempRoot {
public:
    explicit TempRoot(bool simulate = true);
    ~TempRoot();
    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

    const std::string& path() const { return path_; }
    // The path of `relative` (an absolute system path such as "/etc/x")
    // under the root.
    std::string operator/(const std::string& relative) const;

    // Writes `content` to the file at `relative`, making its folders.
    void WriteFile(const std::string& relative, const std::string& content) const;
    // The whole content of the file at `relative`; empty when missing.
    std::string ReadFile(const std::string& relative) const;

private:
    std::string path_;
};

// Makes the folders of `path` (like mkdir -p).
void MakeDirectories(const std::string& path);

// A TCP port for one test: distinct for every test process running at once.
unsigned short UniqueTestPort();

#endif
