// The analyzer's announcement and the discovery client against a real
// avahi-daemon in a private network namespace (see mdns_lab.h for the
// set-up, and how to make it by hand). The lab needs root; elsewhere those
// tests skip, saying why.

#include <gtest/gtest.h>
#include <net/if.h>
#include <signal.h>
#include <unistd.h>

#include "borealis/discovery/bonjour_client.h"
#include "borealis/discovery/bonjour_resolver.h"
#include "borealis/discovery/service_advertisement.h"
#include "borealis/platform/sim_platform.h"
#include "borealis/system/interface_status.h"
#include "tests/e2e/mdns_lab.h"
#include "tests/support/analyzer.h"
#include "tests/support/error_text.h"
#include "tests/support/line_client.h"
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
    std::string line = info.name + " " + info.type + " " + info.domain + " on " + interface +
                       " at " + info.host + " port " + std::to_string(info.port) + ":";
    for (const SocketAddress& address : info.addresses) {
        line += " " + address.ToString();
        if (address.GetFamily() == AF_INET6) {
            const auto* ipv6 = reinterpret_cast<const sockaddr_in6*>(address.GetSockAddr());
            line += "%" +
                    std::string(::if_indextoname(ipv6->sin6_scope_id, interface) ? interface : "?");
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
    const std::string browse_error =
        std::string("Unable to browse for service: ") + kType + ": Unknown Error";
    EXPECT_EQ(child.Transcript(), "error Unable to register service: " + GetHostName() +
                                      ": Unknown Error\n" + "error " + browse_error + "\nthrown " +
                                      browse_error + "\n");
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
            for (std::size_t i = 0; i < BonjourClient::kPoolSize; ++i)
                client.Browse(kType, "local");
            client.Register("vela", kType, "local", 4410, {});
            client.Browse(kType, "local");
            client.Reset();
        }
        // The freed pool takes a registration, which the responder confirms.
        client.Register("vela", kType, "local", 4410, {});
        PumpUntil([&] { return listener.registered; });
    });
    const std::string refusals =
        std::string("error Unable to register service: vela: Out of resources\n") +
        "error Unable to browse for service: " + kType + ": Out of resources\n";
    EXPECT_EQ(child.Transcript(),
              refusals + refusals + "registered vela _norvance-vela._tcp. local.\n");
}

// The daemon in the lab, on the simulated analyzer, as a browsing program
// sees it: named after the host, on the daemon's port, with the analyzer's
// identity in the TXT record; SIGUSR1 withdraws it and announces it again.
TEST(DaemonAdvertisement, AnnouncesTheAnalyzerAndRenewsItAtEveryConfigurationRead) {
    MdnsLab lab;
    if (const std::string why = lab.Start(); !why.empty()) GTEST_SKIP() << why;
    TempRoot root;
    root.WriteFile("/etc/factory.conf",
                   "<norvance><vela><factory><serialnumber>ch4-0042</serialnumber></factory></"
                   "vela></norvance>\n");
    const unsigned short port = UniqueTestPort();
    const auto [sim, daemon] = lab.RunAnalyzer(root, port);
    const pid_t daemon_pid = daemon->pid();

    ClientChild child(
        lab.BusAddress(), {lab.Namespace("net"), lab.Namespace("uts")}, [&](ClientChild& self) {
            BonjourResolver resolver;
            BonjourClient browser(&resolver);
            browser.Browse(kType, "local");
            auto resolved = [&](const std::string& name) {
                const auto host = resolver.Find(name);
                return host && host->addresses.size() == 2;
            };
            if (!PumpUntil([&] { return resolved(MdnsLab::kHostName); }))
                return self.Say("not resolved");
            self.Say("resolved " + Describe(*resolver.Find(MdnsLab::kHostName)));

            // An announcement that comes back under the same name within the
            // second its withdrawal leaves it looks to a browser as if it never
            // left; under a new host name both the withdrawal and the new
            // announcement show.
            ::sethostname("vela-0043", 9);
            ::kill(daemon_pid, SIGUSR1);
            PumpUntil([&] { return !resolver.Find(MdnsLab::kHostName) && resolved("vela-0043"); });
            std::string names;
            for (const auto& host : resolver.Hosts()) names += " " + host->name;
            self.Say("after SIGUSR1:" + names);
        });
    // The simulator's CPLD identifies itself as 1.3.12, built 2021-06-15 at
    // 10:00; the responder answers for the addresses under its own name.
    EXPECT_EQ(child.Transcript(),
              "resolved vela-0042 _norvance-vela._tcp. local. on v0 at vela-0042.local. port " +
                  std::to_string(port) +
                  ": 10.77.0.1 fe80::ff:fe4c:1001%v0 [company=Norvance Instruments] "
                  "[cpld=1.3.12 (2021-06-15 10:00)] [macaddress=02:00:00:4c:10:01] [model=VELA] "
                  "[sn=ch4-0042] "
                  "[type=Borealis Analyzer] [ver=1.0.14]\n"
                  "after SIGUSR1: vela-0043\n")
        << daemon->Output();
}

// With no responder to reach, the registration fails and the daemon serves
// all the same.
TEST(DaemonAdvertisement, WithoutAResponderTheDaemonRunsUnannounced) {
    TempRoot root;
    SimulatedAnalyzer sim(root);
    const unsigned short port = UniqueTestPort();
    std::vector<std::string> environment = DaemonEnvironment(root, port);
    environment.push_back("DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + root / "/no-bus");
    ChildProcess daemon(BorealisExecutable(), {}, environment);
    EXPECT_TRUE(WaitForGreeting(port)) << daemon.Output();
    daemon.Signal(SIGINT);
    EXPECT_EQ(daemon.Wait(), 0) << daemon.Output();
}

}  // namespace
