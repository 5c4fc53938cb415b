#include "borealis/platform/sim_platform.h"

SimPlatform::SimPlatform(const std::string& root, unsigned short port) : root_(root), port_(port) {}
