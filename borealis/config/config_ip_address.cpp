#include "borealis/config/config_ip_address.h"

#include <iterator>

namespace {

// Paths and IPv6 texts parse as socket addresses too, but the interface
// settings take IPv4 addresses only.
bool ParseIPv4(const std::string& text, SocketAddress* address) {
    try {
        *address = SocketAddress(text);
    } catch (const SocketError&) {
        return false;
    }
    return address->GetFamily() == AF_INET;
}

}  // namespace

ConfigIPAddress::ConfigIPAddress(const std::string& name, const std::string& defaultAddress)
    : Configurable(name), theValue(defaultAddress), theDefault(defaultAddress) {}

void ConfigIPAddress::set(const SocketAddress& address) {
    if (address != theValue) {
        theValue = address;
        set_changed(true);
    }
}

void ConfigIPAddress::set_default() { set(theDefault); }

std::istream& ConfigIPAddress::read_value(std::istream& in, std::ostream& err) {
    std::string text(std::istreambuf_iterator<char>(in), {});
    SocketAddress address;
    if (ParseIPv4(text, &address)) {
        set(address);
    } else {
        err << "unable to read IP address" << std::endl;
    }
    return in;
}

std::ostream& ConfigIPAddress::write_value(std::ostream& out) const {
    return out << theValue.ToString();
}

std::ostream& ConfigIPAddress::write_doctype(std::ostream& out) const {
    return out << "int.int.int.int";
}
