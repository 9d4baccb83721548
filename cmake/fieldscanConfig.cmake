# Defines the target fieldscan::fieldscan.
include(${CMAKE_CURRENT_LIST_DIR}/fieldscanTargets.cmake)
