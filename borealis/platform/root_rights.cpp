#include "borealis/platform/root_rights.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

RootRights::RootRights() : saved_(::geteuid()) {
    if (::seteuid(0) != 0)
        throw std::runtime_error(std::string("Unable to gain super user priviledges: ") +
                                 std::strerror(errno));
}

RootRights::~RootRights() {
    const int saved_errno = errno;  // the privileged work's error must survive the restore
    if (::seteuid(saved_) != 0) {
        // Nothing more can be done; the work's own outcome is reported.
    }
    errno = saved_errno;
}
