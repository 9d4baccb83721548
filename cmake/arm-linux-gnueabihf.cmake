# 32-bit ARM Linux, hard float (Debian: g++-arm-linux-gnueabihf, qemu-user-static).
set(CMAKE_SYSTEM_PROCESSOR arm)
set(FIELDSCAN_TRIPLET arm-linux-gnueabihf)
set(FIELDSCAN_QEMU qemu-arm-static)
include(${CMAKE_CURRENT_LIST_DIR}/cross-linux.cmake)
# Notes on what GCC 7.1 changed in passing parameters, hundreds of them.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
