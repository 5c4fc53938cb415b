// The Debian package cpack makes of this build: what it installs where.

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/temp_root.h"
#include "tests/tools/vela_test_support.h"

namespace {

TEST(Package, InstallsTheProgramsManualPagesInitScriptAndServices) {
    TempRoot folder(false);
    std::string output;
    ASSERT_EQ(HostCommand("cpack --config '" BOREALIS_BINARY_DIR "/CPackConfig.cmake' -B '" +
                              folder.path() + "'",
                          output),
              0)
        << output;
    ASSERT_EQ(
        HostCommand("dpkg-deb --contents '" + folder.path() + "'/borealis_1.0.14_*.deb", output), 0)
        << output;
    // The files, with their modes; folders left out.
    std::istringstream listing(output);
    std::string files;
    for (std::string mode, owner, size, date, time, path;
         listing >> mode >> owner >> size >> date >> time >> path;)
        if (mode[0] == '-') files += mode + " " + path + "\n";
    EXPECT_EQ(files,
              "-rwxr-xr-x ./etc/rc.d/init.d/borealis\n"
              "-rwxr-xr-x ./usr/bin/vela\n"
              "-rwxr-xr-x ./usr/bin/vela-sim\n"
              "-rw-r--r-- ./usr/lib/systemd/system/borealis.service\n"
              "-rw-r--r-- ./usr/lib/systemd/system/vela-sim.service\n"
              "-rwxr-xr-x ./usr/sbin/borealis\n"
              "-rw-r--r-- ./usr/share/man/man1/vela.1\n"
              "-rw-r--r-- ./usr/share/man/man7/vela-protocol.7\n"
              "-rw-r--r-- ./usr/share/man/man8/borealis.8\n");
    ASSERT_EQ(HostCommand("dpkg-deb --info '" + folder.path() + "'/borealis_1.0.14_*.deb conffiles",
                          output),
              0);
    EXPECT_EQ(output, "/etc/rc.d/init.d/borealis\n");
}

}  // namespace
