#ifndef COMMON_ERRNO_ERROR_H
#define COMMON_ERRNO_ERROR_H

#include <stdexcept>
#include <string>

// The exception for a failed system call: the operation's message, ": " and
// the system's text for errno as it was when the error was built.
class ErrnoError : public std::runtime_error {
public:
    explicit ErrnoError(const std::string& message);
    // Builds the text from an explicit error number instead of errno.
    ErrnoError(const std::string& message, int error_number);
};

#endif
