# Installs headers, library and the files for find_package(fieldscan) and pkg-config. The installed tree may be moved.
# Components, for cmake --install --component: fieldscan_library (the shared library), fieldscan_development (headers,
# what programs are linked with) and fieldscan_program (tools/).
include(CMakePackageConfigHelpers)

set(fieldscan_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/fieldscan)

install(TARGETS fieldscan EXPORT fieldscanTargets
    RUNTIME COMPONENT fieldscan_library
    LIBRARY COMPONENT fieldscan_library NAMELINK_COMPONENT fieldscan_development
    ARCHIVE COMPONENT fieldscan_development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/fieldscan TYPE INCLUDE COMPONENT fieldscan_development FILES_MATCHING PATTERN "*.h")
install(EXPORT fieldscanTargets NAMESPACE fieldscan::
    DESTINATION ${fieldscan_package_dir}
    COMPONENT fieldscan_development)

write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/fieldscanConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES cmake/fieldscanConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/fieldscanConfigVersion.cmake
    DESTINATION ${fieldscan_package_dir}
    COMPONENT fieldscan_development)

file(RELATIVE_PATH fieldscan_pc_up /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" fieldscan_pc_up ${fieldscan_pc_up})
set(fieldscan_pc_definitions "")
if(NOT BUILD_SHARED_LIBS)
    set(fieldscan_pc_definitions " -DFIELDSCAN_STATIC")
endif()
configure_file(cmake/fieldscan.pc.in fieldscan.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/fieldscan.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT fieldscan_development)
