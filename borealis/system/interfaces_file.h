#ifndef BOREALIS_SYSTEM_INTERFACES_FILE_H
#define BOREALIS_SYSTEM_INTERFACES_FILE_H

#include <string>

#include "common/socket.h"

// The IPv4 settings of one interface in the system's interfaces file. The
// static addresses are kept under a DHCP interface too (as comments in the
// file), ready for a switch back to static.
struct InterfaceConfig {
    bool dhcp = true;
    SocketAddress address{std::string("192.168.1.95")};
    SocketAddress netmask{std::string("255.255.255.0")};
    SocketAddress gateway{std::string("192.168.1.1")};
};

// The settings of interface `name` in the interfaces file `text`: the
// defaults above for whatever its stanza leaves out or gives in a form that
// is no address. Commented lines of the stanza are read too. Never fails.
InterfaceConfig ReadInterfaceConfig(const std::string& text, const std::string& name);

// `text` with the "auto" line and the stanza of interface `name` removed and
// a new stanza for `config` appended; every other line keeps its place.
// Never fails.
std::string WriteInterfaceConfig(const std::string& text, const std::string& name,
                                 const InterfaceConfig& config);

#endif
