#ifndef BOREALIS_CONFIG_CONFIG_BOX_H
#define BOREALIS_CONFIG_CONFIG_BOX_H

#include <string>
#include <vector>

#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"

// The columns of a data record sent to or logged by the interface box. The
// time columns seconds and nanoseconds and the checksum are always sent, so
// they cannot be switched off. Only the USB log has date and time columns.
class ConfigBoxData : public ConfigurableComposite {
public:
    ConfigBoxData(const std::string& name, bool withDateTime);

    // Whether date and time are elements of this list.
    bool has_date_time() const { return theDateTime; }

    ConfigurableBool msec;
    ConfigurableBool seconds;
    ConfigurableBool nanoseconds;
    ConfigurableBool diag;
    ConfigurableBool ch4;
    ConfigurableBool ch4d;
    ConfigurableBool temp;
    ConfigurableBool pressure;
    ConfigurableBool rssi;
    ConfigurableBool droprate;
    ConfigurableBool aux1;
    ConfigurableBool aux2;
    ConfigurableBool aux3;
    ConfigurableBool aux4;
    ConfigurableBool aux5;
    ConfigurableBool aux6;
    ConfigurableBool aux7;
    ConfigurableBool aux8;
    ConfigurableBool auxtc1;
    ConfigurableBool auxtc2;
    ConfigurableBool auxtc3;
    ConfigurableBool chk;
    // Children only when built with date and time; unused otherwise.
    ConfigurableBool date;
    ConfigurableBool time;

private:
    bool theDateTime;
};

// vela/box/output: what the daemon streams to the interface box.
class ConfigBoxOutput : public ConfigurableComposite {
public:
    explicit ConfigBoxOutput(const std::string& name = "output");

    ConfigBoxData data;
    ConfigurableBool waveforms;
    ConfigurableBool status;
    ConfigurableBool dataclock;
};

// vela/box/usb/status: where the box logs status records on its USB stick.
class ConfigBoxUSBStatus : public ConfigurableMultipleChoice {
public:
    explicit ConfigBoxUSBStatus(const std::string& name = "status");

private:
    static std::vector<std::string> theOptions;
};

// vela/box/usb/split: after how many minutes the box starts a new log file
// (0: never).
class ConfigBoxUSBSplit : public ConfigurableMultipleChoice {
public:
    explicit ConfigBoxUSBSplit(const std::string& name = "split");

    // The split interval of the current option in seconds.
    int number() const;

private:
    static std::vector<std::string> theOptions;
    static std::vector<int> theNumbers;
};

// vela/box/usb: the box's USB logging.
class ConfigBoxUSB : public ConfigurableComposite {
public:
    explicit ConfigBoxUSB(const std::string& name = "usb");

    ConfigBoxData data;
    ConfigBoxUSBStatus status;
    ConfigBoxUSBSplit split;
    ConfigurableBool zip;
};

// vela/box: settings for the connected interface box.
class ConfigBox : public ConfigurableComposite {
public:
    explicit ConfigBox(const std::string& name = "box");

    ConfigBoxOutput output;
    ConfigBoxUSB usb;
};

#endif
