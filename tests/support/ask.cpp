#include "tests/support/ask.h"

#include <sstream>

#include "configurable/configurable.h"

std::string Ask(Configurable& root, const std::string& request) {
    std::istringstream in(request);
    std::ostringstream out;
    Configurable::set_compact(out);
    root.process(in, out);
    return out.str();
}
