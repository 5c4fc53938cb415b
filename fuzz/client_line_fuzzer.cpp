// A client's lines into the hub: XML requests read into the document with
// the change dispatch, change subscriptions answered on the next change, and
// text commands, from one connection.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_hub.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string lines(reinterpret_cast<const char*>(data), size);
    if (lines.empty() || lines.back() != '\n') lines += '\n';
    FuzzHub::Instance().ClientReads(lines);
    return 0;
}
