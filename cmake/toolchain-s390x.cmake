# 64 bits, big-endian.
set(DCM_ARCHITECTURE s390x)
set(DCM_TRIPLET s390x-linux-gnu)
set(DCM_EMULATOR qemu-s390x)
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-debian.cmake)
