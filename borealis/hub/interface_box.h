#ifndef BOREALIS_HUB_INTERFACE_BOX_H
#define BOREALIS_HUB_INTERFACE_BOX_H

#include <string>

#include "borealis/hub/box_samples.h"

class SocketClient;

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
    // The greeting's line about the box.
    std::string EventLine() const {
        return Connected() ? "DATAEVENT\tBOXCONNECTED\t" + model + "\t" + description + "\n"
                           : "DATAEVENT\tBOXDISCONNECTED\n";
    }
};

#endif
