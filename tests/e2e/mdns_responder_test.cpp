// The discovery client and the advertisement against a real avahi-daemon in
// a private network namespace (see mdns_lab.h for the set-up, and how to
// make it by hand). The lab needs root; elsewhere those tests skip, saying
// why.

#include <gtest/gtest.h>
#include <net/if.h>

#include "borealis/discovery/bonjour_client.h"
#include "borealis/discovery/bonjour_resolver.h"
#include "borealis/discovery/service_advertisement.h"
#include "borealis/platform/sim_platform.h"
#include "borealis/system/interface_status.h"
#include "tests/e2e/mdns_lab.h"
#include "tests/support/error_text.h"
#include "tests/support/pump.h"

namespace {

const char kType[] = "_norvance-vela._tcp";

// Tells the test process about registrations and failures, one line each.
class TellingListener : public BonjourClientListener {
public:
    explicit TellingListener(ClientChild& child, bool loud = false) : child_(child), loud_(loud) {}
    void ServiceRegistered(const std::string& name, const std::string& type,
                           const std::string& domain) override {
        child_.Say("registered " + name + " " + type + " " + domain);
        registered = true;
    }
    bool HandleError(const std::string& message) override {
        child_.Say("error " + message);
        return loud_;
    }
    bool registered = false;

private:
    ClientChild& child_;
    bool loud_;
};

// One line for a resolved service: where it is, its addresses (IPv6 with
// their scope) and its TXT record.
std::string Describe(const HostInfo& info) {
    char interface[IF_NAMESIZE] = "?";
    ::if_indextoname(info.interface_index, interface);
    std::string line = info.name + " " + info.type + " " + info.domain + " on " + interface + " at " +
                       info.host + " port " + std::to_string(info.port) + ":";
    for (const SocketAddress& address : info.addresses) {
        line += " " + address.ToString();
        if (address.GetFamily() == AF_INET6) {
            const auto* ipv6 = reinterpret_cast<const sockaddr_in6*>(address.GetSockAddr());
            line += "%" + std::string(::if_indextoname(ipv6->sin6_scope_id, interface) ? interface : "?");
        }
    }
    for (const auto& entry : info.txt) line += " [" + entry.first + "=" + entry.second + "]";
    return line;
}

// What the daemon meets on a machine without a responder: the announcement
// fails, is reported, and ends nothing.
TEST(BonjourClient, FailsQuietlyWithoutAResponder) {
    TempRoot root;  // nothing listens on its "no-bus"
    ClientChild child("unix:path=" + root / "no-bus", {}, [&](ClientChild& self) {
        TellingListener quiet(self), loud(self, true);
        BonjourClient client(&quiet);
        ServiceAdvertisement(client, SimPlatform(root.path(), 14410)).Advertise("1.2.7", "1234");
        BonjourClient throwing(&loud);
        self.Say("thrown " + ErrorText([&] { throwing.Browse(kType, "local"); }));
    });
    const std::string browse_error = std::string("Unable to browse for service: ") + kType + ": Unknown Error";
    EXPECT_EQ(child.Transcript(), "error Unable to register service: " + GetHostName() + ": Unknown Error\n" +
                                      "error " + browse_error + "\nthrown " + browse_error + "\n");
}

// The pool of 100 slots, filled twice with live browses: the next operation
// of each kind is refused, and Reset frees every slot.
TEST(BonjourClient, HoldsOneHundredOperationsUntilReset) {
    MdnsLab lab;
    if (const std::string why = lab.Start(); !why.empty()) GTEST_SKIP() << why;
    ClientChild child(lab.BusAddress(), {}, [](ClientChild& self) {
        TellingListener listener(self);
        BonjourClient client(&listener);
        for (int round = 1; round <= 2; ++round) {
            for (std::size_t i = 0; i < BonjourClient::kPoolSize; ++i) client.Browse(kType, "local");
            client.Register("vela", kType, "local", 4410, {});
            client.Browse(kType, "local");
            client.Reset();
        }
    });
    const std::string refusals = std::string("error Unable to register service: vela: Out of resources\n") +
                                 "error Unable to browse for service: " + kType + ": Out of resources\n";
    EXPECT_EQ(child.Transcript(), refusals + refusals);
}

// The analyzer's announcement as a browsing program sees it, through avahi's
// own browser and through BonjourClient's browse and resolver; Reset
// withdraws it.
TEST(ServiceAdvertisement, IsFoundByBrowsingARealResponder) {
    MdnsLab lab;
    if (const std::string why = lab.Start(); !why.empty()) GTEST_SKIP() << why;
    TempRoot root;
    ClientChild child(lab.BusAddress(), {lab.Namespace("net"), lab.Namespace("uts")}, [&](ClientChild& self) {
        TellingListener listener(self);
        BonjourClient client(&listener);
        // The lab's link plays the analyzer's bridge.
        ServiceAdvertisement(client, SimPlatform(root.path(), 14410, MdnsLab::kInterface))
            .Advertise("1.2.7 (2010-05-14 09:00)", "1234");
        if (!PumpUntil([&] { return listener.registered; })) return self.Say("not registered");

        BonjourResolver resolver;
        BonjourClient browser(&resolver);
        browser.Browse(kType, "local");
        auto found = [&] { return resolver.Find(GetHostName()); };
        if (!PumpUntil([&] { return found() && found()->addresses.size() == 2; }))
            return self.Say("not resolved");
        self.Say("resolved " + Describe(*found()));
        self.Say(MdnsLab::Browse(kType));

        client.Reset();
        if (PumpUntil([&] { return !found(); })) self.Say("withdrawn");
    });
    // avahi-browse lists the strings of a TXT record last first.
    EXPECT_EQ(child.Transcript(),
              "registered vela-0042 _norvance-vela._tcp. local.\n"
              "resolved vela-0042 _norvance-vela._tcp. local. on v0 at vela-0042.local. port 14410: "
              "10.77.0.1 fe80::ff:fe4c:1001%v0 [company=Norvance Instruments] "
              "[cpld=1.2.7 (2010-05-14 09:00)] [macaddress=02:00:00:4c:10:01] [model=VELA] [sn=1234] "
              "[type=Borealis Analyzer] [ver=1.0.14]\n"
              "+;v0;IPv4;vela-0042;_norvance-vela._tcp;local\n"
              "=;v0;IPv4;vela-0042;_norvance-vela._tcp;local;vela-0042.local;10.77.0.1;14410;"
              "\"ver=1.0.14\" \"type=Borealis Analyzer\" \"sn=1234\" \"model=VELA\" "
              "\"macaddress=02:00:00:4c:10:01\" \"cpld=1.2.7 (2010-05-14 09:00)\" "
              "\"company=Norvance Instruments\"\n\n"
              "withdrawn\n");
}

}  // namespace
