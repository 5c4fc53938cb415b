#ifndef BOREALIS_CONFIG_CONFIG_IP_ADDRESS_H
#define BOREALIS_CONFIG_CONFIG_IP_ADDRESS_H

#include <string>

#include "common/socket.h"
#include "configurable/configurable.h"

// An IPv4 address of the network settings, written in dotted form.
class ConfigIPAddress : public Configurable {
public:
    // The default is given as text; it must be a valid address.
    ConfigIPAddress(const std::string& name, const std::string& defaultAddress);

    const SocketAddress& value() const { return theValue; }
    // Stores the address and marks the node changed when it differs.
    void set(const SocketAddress& address);

    void set_default() override;
    // Takes the whole text as one address; text that is no address is
    // reported and leaves the value as it was.
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    SocketAddress theValue;
    SocketAddress theDefault;
};

#endif
