# Shared part of the Debian cross toolchain files (aarch64-linux-gnu.cmake,
# arm-linux-gnueabihf.cmake). They set MERO_CROSS_TRIPLET, MERO_CROSS_PROCESSOR
# and MERO_CROSS_QEMU, then include this file.
#
# Compilers come from Debian's g++-<triplet> packages and the target's
# libraries from /usr/<triplet>; binaries run under qemu-user with that
# folder as their root, which is how ctest and the test discovery start them.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${MERO_CROSS_PROCESSOR})
set(CMAKE_C_COMPILER ${MERO_CROSS_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${MERO_CROSS_TRIPLET}-g++)

set(CMAKE_FIND_ROOT_PATH /usr/${MERO_CROSS_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${MERO_CROSS_QEMU} -L /usr/${MERO_CROSS_TRIPLET})

# GCC notes on every std::pair<double, double> passed by value that its ABI
# changed in GCC 10.1; nothing here mixes code from before that.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
