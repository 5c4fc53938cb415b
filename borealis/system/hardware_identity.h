#ifndef BOREALIS_SYSTEM_HARDWARE_IDENTITY_H
#define BOREALIS_SYSTEM_HARDWARE_IDENTITY_H

#include <string>

// The revision and build date of the programmable logic, as published by
// the io4410 platform device: "major.minor.build (YYYY-MM-DD HH:00)".
// A file that is missing or holds no number counts as 0.
std::string GetHardwareIdentity();

#endif
