# Cross-build for the analyzer's processor: 32-bit ARM with hard float
# (Debian armhf, ARMv7), using Debian's arm-linux-gnueabihf cross compiler.
#
# scripts/setup-arm prepares what this file relies on:
#  - the armhf libraries the build links come either from Debian multiarch
#    packages (/usr/lib/arm-linux-gnueabihf) or, when apt cannot install
#    those next to the host's, from the same packages unpacked into
#    build/armhf-sysroot, together with the C and C++ run-time libraries;
#  - GoogleTest and GoogleMock, built for armhf, in build/armhf-sysroot/usr.
# Programs run on the build machine under qemu-arm user-mode emulation.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

# 64-bit file offsets and inode numbers. Without them readdir and stat fail
# with EOVERFLOW as soon as a file system hands out values beyond 32 bits
# (ext4 directory offsets are 64-bit hashes when the kernel is 64-bit, as it
# is under emulation). 64-bit time_t, so that the analyzer's clock, its
# records and its settings go on past 2038-01-19 03:14:07 UTC (the C library
# allows it only together with 64-bit offsets).
set(CMAKE_C_FLAGS_INIT "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64")
set(CMAKE_CXX_FLAGS_INIT "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64")

if(NOT BOREALIS_ARM_SYSROOT)
  set(BOREALIS_ARM_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot)
endif()
get_filename_component(BOREALIS_ARM_SYSROOT ${BOREALIS_ARM_SYSROOT} ABSOLUTE)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BOREALIS_ARM_SYSROOT)

# The compiler brings its own C library; the sysroot only adds libraries, so
# it is a search root rather than the compiler's --sysroot. "/" stays a root
# for the architecture-independent headers (Boost) and multiarch libraries.
set(CMAKE_FIND_ROOT_PATH ${BOREALIS_ARM_SYSROOT} /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ENV{PKG_CONFIG_LIBDIR}
    "${BOREALIS_ARM_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:/usr/lib/arm-linux-gnueabihf/pkgconfig:/usr/share/pkgconfig")

# Shared libraries pull in others (the DNS-SD library needs the Avahi client,
# D-Bus and their own dependencies); the linker looks for those here.
set(arm_library_dirs
  ${BOREALIS_ARM_SYSROOT}/usr/lib/arm-linux-gnueabihf
  ${BOREALIS_ARM_SYSROOT}/lib/arm-linux-gnueabihf
  /usr/lib/arm-linux-gnueabihf
  /lib/arm-linux-gnueabihf)
string(REPLACE ";" ":" arm_rpath_link "${arm_library_dirs}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,-rpath-link,${arm_rpath_link}")
endforeach()

# qemu-arm loads the dynamic loader and the shared libraries from the root
# given with -L: the sysroot when the libraries were unpacked there, the
# machine's own root when they are multiarch packages. Either way loader and
# C library come from one and the same Debian package.
if(EXISTS ${BOREALIS_ARM_SYSROOT}/lib/ld-linux-armhf.so.3)
  set(arm_runtime_root ${BOREALIS_ARM_SYSROOT})
else()
  set(arm_runtime_root /)
endif()
find_program(BOREALIS_QEMU_ARM qemu-arm)
if(BOREALIS_QEMU_ARM)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${BOREALIS_QEMU_ARM} -L ${arm_runtime_root})
else()
  message(WARNING "qemu-arm not found: the armhf build will not run its tests (scripts/setup --arm installs it)")
endif()
