#ifndef BOREALIS_PLATFORM_ROOT_RIGHTS_H
#define BOREALIS_PLATFORM_ROOT_RIGHTS_H

#include <sys/types.h>

// Holds root rights for its lifetime: the effective user becomes 0 and the
// one found is given back on every path out, the failing ones included.
// Throws std::runtime_error("Unable to gain super user priviledges: " + the
// system's text) when the rights cannot be had.
class RootRights {
public:
    RootRights();
    ~RootRights();
    RootRights(const RootRights&) = delete;
    RootRights& operator=(const RootRights&) = delete;

private:
    uid_t saved_;
};

#endif
