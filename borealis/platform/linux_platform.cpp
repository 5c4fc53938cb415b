// The privileged actions on the analyzer.
#include <signal.h>
#include <unistd.h>

#include "borealis/platform/linux_platform.h"
#include "borealis/platform/root_rights.h"

void LinuxPlatform::AsSuperUser(const std::function<void()>& work) {
    RootRights root;
    work();
}

void LinuxPlatform::Reboot() {
    ::sync();
    ::kill(1, SIGTERM);
}
