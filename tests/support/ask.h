#ifndef TESTS_SUPPORT_ASK_H
#define TESTS_SUPPORT_ASK_H

#include <string>

class Configurable;

// Runs `request` through `root`'s process, as a client session does, and
// returns the compact answer.
std::string Ask(Configurable& root, const std::string& request);

#endif
