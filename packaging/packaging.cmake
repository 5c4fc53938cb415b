# Installing and packaging, included by the top CMakeLists.txt.
#
# The analyzer's own layout is the default: the daemon in /usr/sbin, the
# client and the simulator in /usr/bin, the init script in /etc/rc.d/init.d.
# `cmake --install <build folder>` puts everything in place (DESTDIR=<dir>
# stages it elsewhere); `cpack` in a build folder makes a Debian package of
# that build, for the processor it was built for (the armhf preset's build
# gives the analyzer's package).
# A build folder configured before this default existed holds CMake's own
# /usr/local, which nobody chose: it moves to /usr once, and a prefix given
# after that stays.
if(NOT BOREALIS_INSTALL_PREFIX_CHECKED)
  if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT OR CMAKE_INSTALL_PREFIX STREQUAL "/usr/local")
    set(CMAKE_INSTALL_PREFIX /usr CACHE PATH "Install prefix: the analyzer's layout" FORCE)
  endif()
  set(BOREALIS_INSTALL_PREFIX_CHECKED ON CACHE INTERNAL "The install prefix has its default")
endif()
include(GNUInstallDirs)

install(TARGETS borealis RUNTIME DESTINATION ${CMAKE_INSTALL_SBINDIR})
install(TARGETS vela vela-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES docs/vela.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES docs/vela-protocol.7 DESTINATION ${CMAKE_INSTALL_MANDIR}/man7)
install(FILES docs/borealis.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8)

# The init script of the analyzer's SysV init, and the systemd units that run
# the daemon against the simulated analyzer on a development host, name the
# installed executables.
set(SBINDIR ${CMAKE_INSTALL_FULL_SBINDIR})
set(BINDIR ${CMAKE_INSTALL_FULL_BINDIR})
configure_file(packaging/borealis.init.in packaging/borealis @ONLY
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
configure_file(packaging/borealis.service.in packaging/borealis.service @ONLY)
configure_file(packaging/vela-sim.service.in packaging/vela-sim.service @ONLY)
install(PROGRAMS ${CMAKE_BINARY_DIR}/packaging/borealis
  DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/rc.d/init.d)
install(FILES ${CMAKE_BINARY_DIR}/packaging/borealis.service ${CMAKE_BINARY_DIR}/packaging/vela-sim.service
  DESTINATION lib/systemd/system)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME borealis)
set(CPACK_PACKAGE_VENDOR "Norvance Instruments")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "VELA CH4 analyzer daemon, its client and its simulator")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "borealis streams the analyzer's measurements and serves its configuration on
TCP port 4410; vela is its command-line client; vela-sim plays the analyzer's
hardware on a development host.")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Norvance Instruments <borealis@norvance.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libavahi-compat-libdnssd1, libc6, libgcc-s1, libstdc++6")
if(TARGET vela_serve_parts)
  # vela serve's HTTP server.
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libcpp-httplib0.11")
endif()
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS avahi-daemon)
if(CMAKE_LIBRARY_ARCHITECTURE STREQUAL "arm-linux-gnueabihf")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
endif()
# The init script lives outside the prefix, so the package is staged as a
# whole tree; it is a configuration file that an upgrade leaves alone once
# edited.
set(CPACK_SET_DESTDIR ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
file(WRITE ${CMAKE_BINARY_DIR}/packaging/conffiles "${CMAKE_INSTALL_FULL_SYSCONFDIR}/rc.d/init.d/borealis\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/packaging/conffiles)
set(CPACK_STRIP_FILES ON)
include(CPack)
