# 32 bits, little-endian.
set(DCM_ARCHITECTURE armhf)
set(DCM_TRIPLET arm-linux-gnueabihf)
set(DCM_EMULATOR qemu-arm)
set(CMAKE_SYSTEM_PROCESSOR arm)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-debian.cmake)
