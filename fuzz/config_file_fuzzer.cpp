// One configuration file read by the hub's configuration read: the first
// byte chooses /etc/vela.conf, /etc/cal.conf or /etc/factory.conf, the rest
// is its content; the other two files are missing.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>

#include "fuzz/fuzz_hub.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char* const files[] = {"/etc/vela.conf", "/etc/cal.conf", "/etc/factory.conf"};
    FuzzHub& fuzz = FuzzHub::Instance();
    for (const char* file : files) std::remove(fuzz.Path(file).c_str());
    std::ofstream(fuzz.Path(files[data[0] % 3]), std::ios::binary)
        .write(reinterpret_cast<const char*>(data) + 1, size - 1);
    try {
        fuzz.Hub().ReadConfiguration();
    } catch (const std::exception&) {
        // A file the document cannot read ends the daemon with its message.
    }
    return 0;
}
