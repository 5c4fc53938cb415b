#ifndef BOREALIS_PLATFORM_SIM_SYSLOG_H
#define BOREALIS_PLATFORM_SIM_SYSLOG_H

#include <string>

#include "common/syslog_stream.h"

// Where a simulated analyzer's syslog messages go: one datagram per message,
// "<priority>identity: text", to the Unix datagram socket at `socket_path`
// (the simulated root's /dev/log) when something listens there, otherwise
// to the host's syslog.
SysLog::Writer SimSyslogWriter(const std::string& socket_path, const std::string& identity);

#endif
