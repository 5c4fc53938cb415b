#ifndef TESTS_SUPPORT_SYSLOG_CATCHER_H
#define TESTS_SUPPORT_SYSLOG_CATCHER_H

#include <string>
#include <vector>

// Plays the syslog socket of a simulated root (<root>/dev/log) and keeps
// every message that arrives, one datagram each.
class SyslogCatcher {
public:
    explicit SyslogCatcher(const std::string& socket_path);
    ~SyslogCatcher();
    SyslogCatcher(const SyslogCatcher&) = delete;
    SyslogCatcher& operator=(const SyslogCatcher&) = delete;

    // The messages received so far, as sent ("<14>borealis: text\n").
    const std::vector<std::string>& Messages();
    // Waits until a message equal to `message` has arrived.
    bool WaitFor(const std::string& message);
    // Waits until a message beginning with `prefix` has arrived.
    bool WaitForPrefix(const std::string& prefix);

private:
    int fd_;
    std::vector<std::string> messages_;
};

#endif
