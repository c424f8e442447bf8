# 64-bit ARM (an app's arm64-v8a) with Debian's cross compiler, run under
# qemu-aarch64. See LinuxCross.cmake.
set(MERO_CROSS_TRIPLET aarch64-linux-gnu)
set(MERO_CROSS_PROCESSOR aarch64)
set(MERO_CROSS_QEMU qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/LinuxCross.cmake)
