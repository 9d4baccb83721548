# 64-bit ARM Linux (Debian: g++-aarch64-linux-gnu, qemu-user-static).
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(FIELDSCAN_TRIPLET aarch64-linux-gnu)
set(FIELDSCAN_QEMU qemu-aarch64-static)
include(${CMAKE_CURRENT_LIST_DIR}/cross-linux.cmake)
