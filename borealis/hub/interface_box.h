#ifndef BOREALIS_HUB_INTERFACE_BOX_H
#define BOREALIS_HUB_INTERFACE_BOX_H

#include <array>
#include <cstdint>
#include <istream>
#include <string>

#include "borealis/hub/box_samples.h"

class SocketClient;

// One periodic report of an interface box: the "Base" line's fields after
// its first word.
struct BoxReport {
    std::int64_t seconds = 0;
    std::int32_t nanoseconds = 0;
    int usb = 0;
    float usb_capacity = 0;
    float usb_free_space = 0;
    std::array<float, 4> aux{};  // AUX5 to AUX8
    std::string model;           // "4460" when the report names none
    std::string description;     // "Unknown" when nothing follows the numbers
};

// Reads a report's nine numbers, then the optional model word and the rest of
// the line as the description. False when a number is missing or unreadable.
bool ParseBoxReport(std::istream& in, BoxReport& report);

// The optional interface box: which client it is, what it says it is, the
// state of its USB storage, and the analog samples it has sent that the data
// records have not used yet. No box is connected until one reports.
struct InterfaceBox {
    SocketClient* client = nullptr;
    std::string model;
    std::string description;
    int usb = 0;
    float usb_capacity = 0;
    float usb_free_space = 0;
    BoxSampleQueue samples;

    bool Connected() const { return client != nullptr; }
    // The line that tells clients about the box.
    std::string EventLine() const;
    // `reporter` becomes the box, as its report describes it.
    void Connect(SocketClient* reporter, const BoxReport& report);
    // Keeps the report's USB state and queues its samples.
    void Store(const BoxReport& report);
    // No box any more: every value back to its start.
    void Disconnect();
};

#endif
