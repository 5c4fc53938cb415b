#ifndef TOOLS_VELA_ERROR_H
#define TOOLS_VELA_ERROR_H

#include <stdexcept>
#include <string>

// What vela's exit status tells a script.
enum ExitStatus {
    kExitOk = 0,
    kExitFailure = 1,        // refused, missing, not found, lost, cannot write
    kExitUsage = 2,          // a command line vela cannot use
    kExitCannotConnect = 3,  // the analyzer (or the mDNS responder) out of reach
};

// A failure that ends the command; main prints "vela: " and the text and
// exits with the status.
class VelaError : public std::runtime_error {
public:
    explicit VelaError(const std::string& message, int status = kExitFailure)
        : std::runtime_error(message), status_(status) {}
    int status() const { return status_; }

private:
    int status_;
};

// A command line that vela cannot use.
class UsageError : public VelaError {
public:
    explicit UsageError(const std::string& message) : VelaError(message, kExitUsage) {}
};

// The analyzer, or the mDNS responder, cannot be reached.
class CannotConnect : public VelaError {
public:
    explicit CannotConnect(const std::string& message) : VelaError(message, kExitCannotConnect) {}
};

#endif
