#include "tools/analyzer_identity.h"

#include <vector>

#include "tools/record_reader.h"

namespace {

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

bool AnalyzerIdentity::Take(const std::string& line) {
    const std::vector<std::string> fields = SplitTabs(line);
    if (fields.size() < 2 || fields[0] != "DATAEVENT") return false;
    const std::string& event = fields[1];
    const std::string value = fields.size() > 2 ? fields[2] : "";
    if (event == "MODEL")
        model = value;
    else if (event == "VERSION")
        version = value;
    else if (event == "NAME")
        name = value;
    else if (event == "SN")
        serial = value;
    else if (event == "BOXDISCONNECTED")
        box = "none";
    // The description begins with the blank that followed the model word.
    else if (event == "BOXCONNECTED")
        box = Trimmed(value + " " + (fields.size() > 3 ? Trimmed(fields[3]) : ""));
    else
        return false;
    return true;
}

std::string AnalyzerIdentity::Describe() const {
    return model + " " + name + " (SN " + serial + ", version " + version + ")";
}
