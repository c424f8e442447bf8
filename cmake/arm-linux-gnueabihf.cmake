# 32-bit ARM (an app's armeabi-v7a: ARMv7-A, VFPv3-D16, Thumb-2, as Debian's
# armhf compiler builds by default) with Debian's cross compiler, run under
# qemu-arm. See LinuxCross.cmake.
set(MERO_CROSS_TRIPLET arm-linux-gnueabihf)
set(MERO_CROSS_PROCESSOR armv7)
set(MERO_CROSS_QEMU qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/LinuxCross.cmake)
