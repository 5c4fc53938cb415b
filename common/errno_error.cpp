#include "common/errno_error.h"

#include <cerrno>
#include <cstring>

ErrnoError::ErrnoError(const std::string& message) : ErrnoError(message, errno) {}

ErrnoError::ErrnoError(const std::string& message, int error_number)
    : std::runtime_error(message + ": " + std::strerror(error_number)) {}
