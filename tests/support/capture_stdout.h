#ifndef TESTS_SUPPORT_CAPTURE_STDOUT_H
#define TESTS_SUPPORT_CAPTURE_STDOUT_H

#include <sstream>
#include <streambuf>
#include <string>

// Captures what is printed on std::cout while it lives.
class CaptureStdout {
public:
    CaptureStdout();
    ~CaptureStdout();
    CaptureStdout(const CaptureStdout&) = delete;
    CaptureStdout& operator=(const CaptureStdout&) = delete;

    // Everything printed so far.
    std::string Text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* saved_;
};

#endif
