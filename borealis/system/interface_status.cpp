#include "borealis/system/interface_status.h"

#include <dirent.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "borealis/platform/platform.h"

namespace {

const char kNetClass[] = "/sys/class/net/";

std::string NetClassPath(const Platform& platform, const std::string& relative) {
    return platform.Path(kNetClass + relative);
}

// An interface request for the host interface standing for `name`; the
// kernel takes at most IFNAMSIZ bytes of the name.
ifreq Request(const std::string& host_name) {
    ifreq request;
    std::memset(&request, 0, sizeof request);
    std::strncpy(request.ifr_name, host_name.c_str(), IFNAMSIZ - 1);
    return request;
}

std::string FormatHardwareAddress(const unsigned char* bytes) {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", bytes[0], bytes[1], bytes[2],
                  bytes[3], bytes[4], bytes[5]);
    return text;
}

int ReadBridgeNumber(const Platform& platform, const std::string& bridge, const char* file) {
    std::ifstream in(NetClassPath(platform, bridge + "/bridge/" + file));
    int value = 0;
    if (!(in >> value)) return 0;
    return value;
}

// Entries of the interface folder that can be interfaces: folders or links
// with a visible name.
bool IsInterfaceEntry(const std::string& folder, const dirent& entry) {
    if (entry.d_name[0] == '\0' || entry.d_name[0] == '.') return false;
    struct stat st;
    if (::lstat((folder + entry.d_name).c_str(), &st) != 0) return false;
    return S_ISDIR(st.st_mode) || S_ISLNK(st.st_mode);
}

}  // namespace

NetworkError::NetworkError(const std::string& message, int error_number)
    : std::runtime_error(message + ": " + std::strerror(error_number)) {}

NetworkInterfaceInfo::NetworkInterfaceInfo(const Platform& platform,
                                           const std::string& interface_name)
    : name(interface_name) {
    Socket socket(AF_INET, SOCK_DGRAM, 0);
    ReadRequests(socket.GetFd(), platform.InterfaceName(name));
    if (present) FindBridge(platform);
}

void NetworkInterfaceInfo::ReadRequests(int fd, const std::string& host_name) {
    ifreq request = Request(host_name);
    if (::ioctl(fd, SIOCGIFFLAGS, &request) != 0 || !(request.ifr_flags & IFF_UP)) return;
    present = true;
    index = ::if_nametoindex(request.ifr_name);
    running = (request.ifr_flags & IFF_RUNNING) != 0;

    request = Request(host_name);
    if (::ioctl(fd, SIOCGIFADDR, &request) == 0) {
        has_address = true;
        address = SocketAddress(&request.ifr_addr);
    }
    request = Request(host_name);
    if (::ioctl(fd, SIOCGIFHWADDR, &request) == 0)
        hardware_address =
            FormatHardwareAddress(reinterpret_cast<unsigned char*>(request.ifr_hwaddr.sa_data));
}

void NetworkInterfaceInfo::FindBridge(const Platform& platform) {
    std::string id;
    is_bridge = ReadBridgeId(platform, name, id);
    // A port's "brport/bridge" leads to its bridge's folder; the bridge is
    // the interface with the same bridge id.
    if (!ReadBridgeId(platform, name + "/brport/bridge", id)) return;
    const std::string folder = NetClassPath(platform, "");
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) throw NetworkError("Unable to list directory contents of: " + folder, errno);
    while (const dirent* entry = ::readdir(dir)) {
        std::string candidate_id;
        if (IsInterfaceEntry(folder, *entry) &&
            ReadBridgeId(platform, entry->d_name, candidate_id) && candidate_id == id) {
            is_bridge_port = true;
            bridge = entry->d_name;
            break;
        }
    }
    ::closedir(dir);
}

std::string HostNameFromBuffer(char* buffer, std::size_t size) {
    buffer[size - 1] = '\0';
    return buffer;
}

std::string GetHostName() {
    char buffer[128];
    if (::gethostname(buffer, sizeof buffer) != 0) return "";
    return HostNameFromBuffer(buffer, sizeof buffer);
}

bool ReadBridgeId(const Platform& platform, const std::string& name, std::string& id) {
    std::ifstream in(NetClassPath(platform, name + "/bridge/bridge_id"));
    return static_cast<bool>(in >> id);
}

int TopologyChangeTimer(const Platform& platform, const std::string& bridge) {
    return ReadBridgeNumber(platform, bridge, "topology_change_timer");
}

int TopologyChangeDetected(const Platform& platform, const std::string& bridge) {
    return ReadBridgeNumber(platform, bridge, "topology_change_detected");
}
