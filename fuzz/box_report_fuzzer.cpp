// An interface box's "Base" report lines from one connection (every input
// line is a report), then a data record that takes the box's samples, then
// the box leaves.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "fuzz/fuzz_hub.h"

namespace {

// A data message (code 7, thirty zero words) that arrived at 2026-11-23
// 12:00:00 UTC.
std::string DataRead() {
    const unsigned char header[] = {0xc0, 0x2a, 0x04, 0x6b, 0, 0, 0, 0, 7, 0, 30, 0};
    return std::string(reinterpret_cast<const char*>(header), sizeof header) +
           std::string(60, '\0');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    std::string reports;
    for (std::string line; std::getline(in, line);) reports += "Base" + line + "\n";
    FuzzHub& fuzz = FuzzHub::Instance();
    fuzz.ClientReads(reports, [&fuzz] { fuzz.DeviceReads(DataRead()); });
    return 0;
}
