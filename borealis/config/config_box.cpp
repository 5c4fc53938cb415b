#include "borealis/config/config_box.h"

#include "borealis/config/config_choice.h"

ConfigBoxData::ConfigBoxData(const std::string& name, bool withDateTime)
    : ConfigurableComposite(name),
      msec("msec", false),
      seconds("seconds", true),
      nanoseconds("nanoseconds", true),
      diag("diag", true),
      ch4("ch4", true),
      ch4d("ch4d", true),
      temp("temp", true),
      pressure("pressure", true),
      rssi("rssi", true),
      droprate("droprate", true),
      aux1("aux1", true),
      aux2("aux2", true),
      aux3("aux3", true),
      aux4("aux4", true),
      aux5("aux5", true),
      aux6("aux6", true),
      aux7("aux7", true),
      aux8("aux8", true),
      auxtc1("auxtc1", true),
      auxtc2("auxtc2", true),
      auxtc3("auxtc3", true),
      chk("chk", true),
      date("date", withDateTime),
      time("time", withDateTime),
      theDateTime(withDateTime) {
    for (Configurable* column :
         {&msec, &seconds,  &nanoseconds, &diag,   &ch4,    &ch4d, &temp, &pressure,
          &rssi, &droprate, &aux1,        &aux2,   &aux3,   &aux4, &aux5, &aux6,
          &aux7, &aux8,     &auxtc1,      &auxtc2, &auxtc3, &chk}) {
        add_child(column);
    }
    seconds.set_read_only(true);
    nanoseconds.set_read_only(true);
    chk.set_read_only(true);
    if (withDateTime) {
        add_child(&date);
        add_child(&time);
    }
}

ConfigBoxOutput::ConfigBoxOutput(const std::string& name)
    : ConfigurableComposite(name),
      data("data", false),
      waveforms("waveforms", false),
      status("status", false),
      dataclock("dataclock", false) {
    add_child(&data);
    add_child(&waveforms);
    add_child(&status);
    add_child(&dataclock);
}

std::vector<std::string> ConfigBoxUSBStatus::theOptions;

ConfigBoxUSBStatus::ConfigBoxUSBStatus(const std::string& name)
    : ConfigurableMultipleChoice(name,
                                 SharedOptions(theOptions, {"same_file", "separate_file", "off"}),
                                 0 /* "same_file" */) {}

std::vector<std::string> ConfigBoxUSBSplit::theOptions;
std::vector<int> ConfigBoxUSBSplit::theNumbers;

ConfigBoxUSBSplit::ConfigBoxUSBSplit(const std::string& name)
    : ConfigurableMultipleChoice(
          name,
          SharedOptions(theOptions, {"0", "15", "30", "60", "90", "120", "180", "240", "1440"}),
          0 /* "0" */) {
    SharedNumbers(theNumbers, {0, 900, 1800, 3600, 5400, 7200, 10800, 14400, 86400});
}

int ConfigBoxUSBSplit::number() const { return theNumbers[value()]; }

ConfigBoxUSB::ConfigBoxUSB(const std::string& name)
    : ConfigurableComposite(name),
      data("data", true),
      status("status"),
      split("split"),
      zip("zip", false) {
    add_child(&data);
    add_child(&status);
    add_child(&split);
    add_child(&zip);
}

ConfigBox::ConfigBox(const std::string& name)
    : ConfigurableComposite(name), output("output"), usb("usb") {
    add_child(&output);
    add_child(&usb);
}
