#include "borealis/hub/interface_box.h"

bool ParseBoxReport(std::istream& in, BoxReport& report) {
    if (!(in >> report.seconds >> report.nanoseconds >> report.usb >> report.usb_capacity >>
          report.usb_free_space))
        return false;
    for (float& value : report.aux)
        if (!(in >> value)) return false;
    if (!(in >> report.model)) report.model = "4460";
    // The description is the rest of the line as it stands, its leading blank
    // included.
    if (!std::getline(in, report.description)) report.description = "Unknown";
    return true;
}

std::string InterfaceBox::EventLine() const {
    return Connected() ? "DATAEVENT\tBOXCONNECTED\t" + model + "\t" + description + "\n"
                       : "DATAEVENT\tBOXDISCONNECTED\n";
}

void InterfaceBox::Connect(SocketClient* reporter, const BoxReport& report) {
    client = reporter;
    model = report.model;
    description = report.description;
}

void InterfaceBox::Store(const BoxReport& report) {
    usb = report.usb;
    usb_capacity = report.usb_capacity;
    usb_free_space = report.usb_free_space;
    samples.Push(TimePair::Of(report.seconds, report.nanoseconds), report.aux);
}

void InterfaceBox::Disconnect() {
    client = nullptr;
    model.clear();
    description.clear();
    usb = 0;
    usb_capacity = usb_free_space = 0;
    samples.Clear();
}
