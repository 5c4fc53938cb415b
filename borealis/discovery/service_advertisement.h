#ifndef BOREALIS_DISCOVERY_SERVICE_ADVERTISEMENT_H
#define BOREALIS_DISCOVERY_SERVICE_ADVERTISEMENT_H

#include <string>

class BonjourClient;
class Platform;

// The analyzer's announcement of its TCP service by DNS service discovery,
// with a TXT record that tells a browsing program the model, maker, software
// version, hardware identity, hardware address and serial number before it
// connects.
class ServiceAdvertisement {
public:
    // The service type the analyzer is announced as.
    static constexpr char kServiceType[] = "_norvance-vela._tcp";

    // Announces through `client` the analyzer on `platform`: its port, and
    // the hardware address of its interface "br0". Neither is owned.
    ServiceAdvertisement(BonjourClient& client, const Platform& platform);

    // Withdraws every earlier announcement of the client and announces the
    // service under the host name, with `cpld` (the hardware identity text)
    // and `serial_number` in the TXT record. Failures go to the client's
    // listener and throw BonjourClient::Error only when it asks for that.
    void Advertise(const std::string& cpld, const std::string& serial_number);

private:
    // The hardware address of "br0"; empty when it cannot be read.
    std::string BridgeHardwareAddress() const;

    BonjourClient& client_;
    const Platform& platform_;
};

#endif
