#include "borealis/system/interfaces_file.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <sstream>
#include <vector>

#include "borealis/system/system_file.h"

namespace {

// A line such as "iface br0 inet static" that names the interface right
// after `keyword`; "iface br0.5" names another interface.
bool NamesInterface(const std::string& line, const std::string& keyword, const std::string& name) {
    const std::string prefix = keyword + " " + name;
    return StartsWith(line, prefix) &&
           (line.size() == prefix.size() ||
            std::isspace(static_cast<unsigned char>(line[prefix.size()])));
}

// Indented and commented lines belong to the stanza above them; an empty
// line or any other line ends it.
bool InsideStanza(const std::string& line) {
    return !line.empty() && (line[0] == '#' || std::isspace(static_cast<unsigned char>(line[0])));
}

// Replaces `address` by the first word of `text` when that is an IPv4 address.
void ParseAddress(const std::string& text, SocketAddress& address) {
    std::istringstream in(text);
    std::string word;
    in_addr parsed;
    if (in >> word && ::inet_pton(AF_INET, word.c_str(), &parsed) == 1)
        address = SocketAddress(parsed);
}

void ReadStanzaLine(const std::string& line, InterfaceConfig& config) {
    const std::pair<const char*, SocketAddress*> keys[] = {
        {"address", &config.address}, {"netmask", &config.netmask}, {"gateway", &config.gateway}};
    for (const auto& key : keys) {
        const auto at = line.find(key.first);
        if (at == std::string::npos) continue;
        ParseAddress(line.substr(at + std::strlen(key.first)), *key.second);
        return;
    }
}

// A DHCP interface keeps its static addresses as comments.
std::string Stanza(const std::string& name, const InterfaceConfig& config) {
    const char* prefix = config.dhcp ? "#\t" : "\t";
    const SocketAddress broadcast = SocketAddress::BroadcastAddress(config.address, config.netmask);
    std::ostringstream out;
    out << "auto " << name << "\n"
        << "iface " << name << " inet " << (config.dhcp ? "dhcp" : "static") << "\n"
        << prefix << "address " << config.address.ToString() << "\n"
        << prefix << "netmask " << config.netmask.ToString() << "\n"
        << prefix << "broadcast " << broadcast.ToString() << "\n"
        << prefix << "gateway " << config.gateway.ToString() << "\n"
        << "\n";
    return out.str();
}

}  // namespace

InterfaceConfig ReadInterfaceConfig(const std::string& text, const std::string& name) {
    InterfaceConfig config;
    const std::vector<std::string> lines = SplitLines(text);
    auto line = std::find_if(lines.begin(), lines.end(), [&](const std::string& candidate) {
        return NamesInterface(candidate, "iface", name);
    });
    if (line == lines.end()) return config;
    config.dhcp = line->find("static") == std::string::npos;
    for (++line; line != lines.end() && InsideStanza(*line); ++line) ReadStanzaLine(*line, config);
    return config;
}

std::string WriteInterfaceConfig(const std::string& text, const std::string& name,
                                 const InterfaceConfig& config) {
    std::string result;
    bool in_old_stanza = false;
    for (const std::string& line : SplitLines(text)) {
        // The old stanza takes the empty lines after it along.
        if (in_old_stanza && (line.empty() || InsideStanza(line))) continue;
        in_old_stanza = NamesInterface(line, "iface", name);
        if (in_old_stanza || NamesInterface(line, "auto", name)) continue;
        result += line + "\n";
    }
    return result + Stanza(name, config);
}
