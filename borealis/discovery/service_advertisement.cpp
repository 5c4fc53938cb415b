#include "borealis/discovery/service_advertisement.h"

#include "borealis/discovery/bonjour_client.h"
#include "borealis/system/interface_status.h"
#include "borealis/platform/platform.h"
#include "borealis/version.h"

ServiceAdvertisement::ServiceAdvertisement(BonjourClient& client, const Platform& platform)
    : client_(client), platform_(platform) {}

void ServiceAdvertisement::Advertise(const std::string& cpld, const std::string& serial_number) {
    const TxtMap txt = {
        {"company", "Norvance Instruments"},
        {"cpld", cpld},
        {"macaddress", BridgeHardwareAddress()},
        {"model", "VELA"},
        {"sn", serial_number},
        {"type", "Borealis Analyzer"},
        {"ver", kBorealisVersion},
    };
    client_.Reset();
    client_.Register(GetHostName(), kServiceType, "local", platform_.Port(), txt);
}

std::string ServiceAdvertisement::BridgeHardwareAddress() const {
    try {
        return NetworkInterfaceInfo(platform_, "br0").hardware_address;
    } catch (const std::runtime_error&) {
        // No socket for the interface request: the analyzer is announced
        // all the same, without its hardware address.
        return "";
    }
}
