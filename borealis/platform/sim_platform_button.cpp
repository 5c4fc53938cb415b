// The simulated network reset button.
#include "borealis/platform/sim_platform.h"

// The simulator listens for the button exactly as for the signal processor:
// a SOCK_SEQPACKET socket at the device's path under the root, connected
// under the same failure message.
int SimPlatform::OpenNetButton(const std::string& path) { return OpenDsp(path); }
