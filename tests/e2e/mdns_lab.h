#ifndef TESTS_E2E_MDNS_LAB_H
#define TESTS_E2E_MDNS_LAB_H

// A real mDNS responder for tests, and clients of it in processes of their
// own.
//
// MdnsLab makes a private network namespace (with a mount namespace whose
// /run is empty, and a host name of its own), a private message bus in the
// test's temporary folder, and an avahi-daemon inside the namespace on that
// bus. By hand, as root, that is (DIR a folder, PID the first command's
// process):
//
//   lab='mount -t tmpfs tmpfs /run && hostname vela-0042 && ip link set lo up
//     && ip link add v0 address 02:00:00:4c:10:01 type veth peer name v1
//     && ip link set v0 up && ip link set v1 up && ip addr add 10.77.0.1/24 dev v0
//     && exec sleep infinity'
//   unshare --net --mount --uts -- sh -c "$lab" &
//   dbus-daemon --config-file=DIR/bus.conf --nofork --print-address &
//   export DBUS_SYSTEM_BUS_ADDRESS=unix:path=DIR/bus
//   nsenter -t PID -n -m -u -- avahi-daemon -f DIR/avahi.conf --no-drop-root --no-chroot
//   --no-rlimits & nsenter -t PID -n -u -- avahi-browse -rpt _norvance-vela._tcp
//
// and the analyzer inside it, after `vela-sim --root R &`:
//
//   BOREALIS_ROOT=R BOREALIS_NETIF=v0 nsenter -t PID -n -u -- borealis
//
// with the two configuration files written below. In the tests every process
// of the lab dies with the test process (parent-death signal), and the
// namespaces go with the last of them.

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/analyzer.h"
#include "tests/support/process.h"
#include "tests/support/temp_root.h"

// The full path of program `name`, looked for on PATH and in the system
// folders; empty when there is none.
inline std::string FindProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(std::string(path ? path : "") + ":/usr/sbin:/sbin:/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (!folder.empty() && ::access((folder + "/" + name).c_str(), X_OK) == 0)
            return folder + "/" + name;
    return "";
}

class MdnsLab {
public:
    // The analyzer's side of the namespace's link, its hardware address,
    // its IPv4 address, and the namespace's host name.
    static constexpr char kInterface[] = "v0";
    static constexpr char kHardwareAddress[] = "02:00:00:4c:10:01";
    static constexpr char kAddress[] = "10.77.0.1";
    static constexpr char kHostName[] = "vela-0042";

    MdnsLab() : folder_(false) {}

    // Brings the lab up and returns "", or returns why this machine cannot
    // have one. Throws std::runtime_error when a part of it fails to start.
    std::string Start() {
#ifdef BOREALIS_UNDER_EMULATION
        return "the mDNS lab runs host programs, not under user-mode emulation";
#endif
        if (::geteuid() != 0) return "making a network namespace needs root";
        for (const char* tool :
             {"setpriv", "unshare", "nsenter", "ip", "dbus-daemon", "avahi-daemon"})
            if (FindProgram(tool).empty())
                return std::string("no ") + tool + " (scripts/setup installs it)";
        holder_ = Launch("setpriv", {"--pdeathsig", "KILL", "--", FindProgram("unshare"), "--net",
                                     "--mount", "--uts", "--", "/bin/sh", "-c", HolderScript()});
        if (!Await(*holder_, "lab-ready\n"))
            return "cannot make a network namespace: " + holder_->Output();
        WriteConfigurations();
        bus_ = Launch("setpriv",
                      {"--pdeathsig", "KILL", "--", FindProgram("dbus-daemon"),
                       "--config-file=" + folder_ / "bus.conf", "--nofork", "--print-address"});
        if (!Await(*bus_, "unix:"))
            throw std::runtime_error("dbus-daemon did not start: " + bus_->Output());
        avahi_ =
            Launch("nsenter", Inside({"--net", "--mount", "--uts"},
                                     {FindProgram("avahi-daemon"), "-f", folder_ / "avahi.conf",
                                      "--no-drop-root", "--no-chroot", "--no-rlimits"}));
        if (!Await(*avahi_, "Server startup complete."))
            throw std::runtime_error("avahi-daemon did not start: " + avahi_->Output());
        return "";
    }

    // The private bus, as DBUS_SYSTEM_BUS_ADDRESS names it.
    std::string BusAddress() const { return "unix:path=" + folder_ / "bus"; }
    // The namespace file of kind `kind` ("net", "uts") of the lab.
    std::string Namespace(const std::string& kind) const {
        return "/proc/" + std::to_string(holder_->pid()) + "/ns/" + kind;
    }
    // Starts `command` in the lab's network and host-name namespaces, on the
    // lab's bus, with the `environment` entries ("NAME=value") added; it dies
    // with the test process. Throws std::runtime_error when it cannot start.
    std::unique_ptr<ChildProcess> Run(const std::vector<std::string>& command,
                                      const std::vector<std::string>& environment = {}) const {
        return Launch("nsenter", Inside({"--net", "--uts"}, command), environment);
    }

    // The simulated analyzer under `root`, once ready, and the daemon on it
    // in the lab on `port`, with the lab's link as its network interface.
    std::pair<std::unique_ptr<ChildProcess>, std::unique_ptr<ChildProcess>> RunAnalyzer(
        const TempRoot& root, unsigned short port) const {
        auto sim = Run({VelaSimExecutable(), "--root", root.path()});
        if (!Await(*sim, "vela-sim: ready " + root.path() + "\n"))
            throw std::runtime_error("vela-sim did not start: " + sim->Output());
        std::vector<std::string> environment = DaemonEnvironment(root, port);
        environment.push_back(std::string("BOREALIS_NETIF=") + kInterface);
        return {std::move(sim), Run({BorealisExecutable()}, environment)};
    }

private:
    static std::string HolderScript() {
        return std::string("mount -t tmpfs tmpfs /run && hostname ") + kHostName +
               " && ip link set lo up && ip link add " + kInterface + " address " +
               kHardwareAddress + " type veth peer name v1 && ip link set " + kInterface +
               " up && ip link set v1 up" + " && ip addr add " + kAddress + "/24 dev " +
               kInterface + " && echo lab-ready && exec sleep infinity";
    }

    // The bus lets everyone own and reach every name; the responder keeps
    // to the lab's link, without IPv6 browsing, wide-area or extra records.
    void WriteConfigurations() const {
        folder_.WriteFile(
            "bus.conf",
            "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN\"\n"
            " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
            "<busconfig>\n  <type>session</type>\n"
            "  <listen>" +
                BusAddress() +
                "</listen>\n  <auth>EXTERNAL</auth>\n"
                "  <policy context=\"default\">\n    <allow user=\"*\"/>\n    <allow own=\"*\"/>\n"
                "    <allow send_destination=\"*\"/>\n    <allow receive_sender=\"*\"/>\n"
                "  </policy>\n</busconfig>\n");
        folder_.WriteFile("avahi.conf",
                          std::string("[server]\nuse-ipv4=yes\nuse-ipv6=no\nallow-interfaces=") +
                              kInterface +
                              "\nenable-dbus=yes\n[wide-area]\nenable-wide-area=no\n"
                              "[publish]\npublish-hinfo=no\npublish-workstation=no\n");
    }

    // nsenter's arguments that run `command` in the lab's namespaces `kinds`.
    std::vector<std::string> Inside(const std::vector<std::string>& kinds,
                                    const std::vector<std::string>& command) const {
        std::vector<std::string> args = {"--target", std::to_string(holder_->pid())};
        args.insert(args.end(), kinds.begin(), kinds.end());
        args.insert(args.end(), {"--", FindProgram("setpriv"), "--pdeathsig", "KILL", "--"});
        args.insert(args.end(), command.begin(), command.end());
        return args;
    }

    // Starts the system program `name` with `args`, on the lab's bus.
    std::unique_ptr<ChildProcess> Launch(const std::string& name,
                                         const std::vector<std::string>& args,
                                         std::vector<std::string> environment = {}) const {
        environment.push_back("DBUS_SYSTEM_BUS_ADDRESS=" + BusAddress());
        return std::make_unique<ChildProcess>(FindProgram(name), args, environment);
    }

    // Waits until `process` printed `text`; false when it ended or the
    // deadline passed first.
    static bool Await(ChildProcess& process, const std::string& text) {
        auto printed = [&] { return process.Output().find(text) != std::string::npos; };
        WaitUntil([&] { return printed() || process.Wait(std::chrono::milliseconds(0)) >= 0; });
        return printed();
    }

    // Declared first, so that it goes last, after every process.
    TempRoot folder_;
    std::unique_ptr<ChildProcess> holder_, bus_, avahi_;
};

// A client of the responder in a forked process of its own. The D-Bus
// library fixes the system bus address at its first use in a process, so
// each client process is told its bus before anything in it talks to one;
// the test process itself never does.
class ClientChild {
public:
    // Runs `body` in a child that first joins the namespaces named by
    // `namespaces` (files such as /proc/PID/ns/net) and takes `bus_address`
    // as its system bus. The child dies with the test process.
    ClientChild(const std::string& bus_address, const std::vector<std::string>& namespaces,
                const std::function<void(ClientChild&)>& body)
        : process_([&](int output_fd) {
              output_fd_ = output_fd;
              return RunChild(bus_address, namespaces, body);
          }) {}

    // In the child: tells the test one line.
    void Say(const std::string& line) {
        const std::string text = line + "\n";
        if (::write(output_fd_, text.data(), text.size()) < 0) std::exit(3);
    }

    // Waits for the child to end and returns what it said, with a last line
    // when it failed or did not end in time.
    std::string Transcript() {
        const int status = process_.Wait(std::chrono::seconds(60));
        const std::string& text = process_.Output();
        if (status < 0) return text + "(still running)\n";
        return status == 0 ? text : text + "(exit status " + std::to_string(status) + ")\n";
    }

private:
    int RunChild(const std::string& bus_address, const std::vector<std::string>& namespaces,
                 const std::function<void(ClientChild&)>& body) {
        try {
            for (const auto& file : namespaces) {
                const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
                if (fd < 0 || ::setns(fd, 0) != 0) throw std::runtime_error("cannot join " + file);
                ::close(fd);
            }
            ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_address.c_str(), 1);
            // The library warns on standard error at its first use.
            ::setenv("AVAHI_COMPAT_NOWARN", "1", 1);
            body(*this);
            return 0;
        } catch (const std::exception& error) {
            Say(std::string("exception: ") + error.what());
            return 1;
        }
    }

    int output_fd_ = -1;  // the child's end of the pipe, in the child
    ChildProcess process_;
};

#endif
