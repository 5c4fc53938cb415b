#ifndef TESTS_SUPPORT_CAPTURE_STDOUT_H
#define TESTS_SUPPORT_CAPTURE_STDOUT_H

#include <iostream>
#include <sstream>
#include <string>

// Captures what is printed on std::cout while it lives.
class CaptureStdout {
public:
    CaptureStdout() : saved_(std::cout.rdbuf(text_.rdbuf())) {}
    ~CaptureStdout() { std::cout.rdbuf(saved_); }
    CaptureStdout(const CaptureStdout&) = delete;
    CaptureStdout& operator=(const CaptureStdout&) = delete;

    // Everything printed so far.
    std::string Text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* saved_;
};

#endif
