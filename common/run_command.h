#ifndef COMMON_RUN_COMMAND_H
#define COMMON_RUN_COMMAND_H

#include <string>

// Runs `command` with /bin/sh -c and waits for it, like system(3), and
// returns its wait status (127 as exit status when the shell cannot be
// started); -1 when no process could be made or waited for. The command
// starts with the default actions for SIGPIPE and SIGHUP and no signal
// blocked, whatever this process ignores or blocks, so that a program it
// starts (and leaves running) behaves as one started from a shell; it
// inherits no descriptor of this process beyond a standard one that is a
// terminal, a pipe or a file.
int RunCommand(const std::string& command);

#endif
