#ifndef SIM_ROOT_BUILDER_H
#define SIM_ROOT_BUILDER_H

#include <string>

// Gives the folder `root` what the daemon finds on an analyzer: the
// programmable logic's identity and register files, host name, network
// interfaces, PTP options and init script, time zone files, and the run,
// log and device folders. A file that exists is never replaced, so a test
// can seed its own. Throws ErrnoError when something cannot be made.
void BuildRoot(const std::string& root);

#endif
