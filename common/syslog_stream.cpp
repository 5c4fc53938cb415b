#include "common/syslog_stream.h"

#include <syslog.h>

#include <stdexcept>

SysLog& SysLog::Instance() {
    static SysLog instance;
    return instance;
}

SysLog::SysLog()
    : writer_(
          [](int priority, const std::string& text) { ::syslog(priority, "%s", text.c_str()); }) {}

void SysLog::SetIdentity(const std::string& name) {
    if (name.empty()) throw std::runtime_error("SysLog: Undefined identity");
    if (name == identity_) return;
    if (name == "UNKNOWN") throw std::runtime_error("SysLog: 'UNKNOWN' is not a valid identity");
    if (!identity_.empty()) throw std::runtime_error("SysLog: Identity cannot be changed");
    identity_ = name;
    // openlog keeps the pointer it is given, so it gets storage that lives as
    // long as the process.
    static std::string openlog_identity;
    openlog_identity = name;
    ::openlog(openlog_identity.c_str(), 0, LOG_USER);
}

int SysLog::PriorityOfLevel(int level) {
    switch (level) {
    case 0: return LOG_ALERT;
    case 1: return LOG_CRIT;
    case 3: return LOG_WARNING;
    case 4: return LOG_NOTICE;
    case 5: return LOG_INFO;
    case 6: return LOG_DEBUG;
    default: return LOG_ERR;
    }
}

void SysLog::Write(const std::string& text, int level) {
    if (identity_.empty()) throw std::runtime_error("SysLog: Undefined identity");
    writer_(PriorityOfLevel(level), text);
}
