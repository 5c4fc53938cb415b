// One read of the signal processor (the driver's frames, each stamped with
// its arrival time) into the hub's device and on to the hub.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_hub.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzHub::Instance().DeviceReads(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
