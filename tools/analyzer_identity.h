#ifndef TOOLS_ANALYZER_IDENTITY_H
#define TOOLS_ANALYZER_IDENTITY_H

#include <string>

// Who the analyzer says it is: the events of its greeting, and the interface
// box events that follow whenever a box comes or goes.
struct AnalyzerIdentity {
    std::string model;
    std::string version;
    std::string name;
    std::string serial;
    std::string box = "none";  // the box's model and description while one is connected

    // Takes a received line (without its line end) that tells one of the
    // above; false, changing nothing, for any other line.
    bool Take(const std::string& line);
    // "VELA ch4-0042 (SN ch4-0042, version 1.0.14)".
    std::string Describe() const;
};

#endif
