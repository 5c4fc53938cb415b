#ifndef BOREALIS_SYSTEM_HARDWARE_IDENTITY_H
#define BOREALIS_SYSTEM_HARDWARE_IDENTITY_H

#include <string>

class Platform;

// The revision and build date of the programmable logic, as published by
// the io4410 platform device under `platform`'s paths:
// "major.minor.build (YYYY-MM-DD HH:00)". A file that is missing or holds no
// number counts as 0; it never fails.
std::string GetHardwareIdentity(const Platform& platform);

#endif
