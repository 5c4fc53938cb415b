// A request into the configuration framework's reading (tokenizer, query
// parser, process) on the framework tests' tree. The first byte's low bit
// makes the tree throw its errors: then Configurable::Error is the only
// exception allowed out; otherwise none is.
#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/configurable/test_tree.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    TestTree tree;
    const std::string request(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (!(data[0] & 1)) {
        Ask(tree.L, request);
        return 0;
    }
    tree.L.set_throw_errors(true);
    try {
        Ask(tree.L, request);
    } catch (const Configurable::Error&) {
    }
    return 0;
}
