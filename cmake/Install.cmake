# Installs headers, library and the files for find_package(fieldscan) and pkg-config. The installed tree may be moved.
include(CMakePackageConfigHelpers)

set(fieldscan_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/fieldscan)

install(TARGETS fieldscan EXPORT fieldscanTargets INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/fieldscan TYPE INCLUDE FILES_MATCHING PATTERN "*.h")
install(EXPORT fieldscanTargets NAMESPACE fieldscan:: DESTINATION ${fieldscan_package_dir})

write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/fieldscanConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES cmake/fieldscanConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/fieldscanConfigVersion.cmake
    DESTINATION ${fieldscan_package_dir})

file(RELATIVE_PATH fieldscan_pc_up /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" fieldscan_pc_up ${fieldscan_pc_up})
set(fieldscan_pc_definitions "")
if(NOT BUILD_SHARED_LIBS)
    set(fieldscan_pc_definitions " -DFIELDSCAN_STATIC")
endif()
configure_file(cmake/fieldscan.pc.in fieldscan.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/fieldscan.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# A Debian package of everything installed: cpack -G DEB in the build folder.
if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_PACKAGE_NAME fieldscan)
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Library for the controller software of a scanning image total station")
    set(CPACK_PACKAGE_CONTACT "The developers of fieldscan <developers@fieldscan.invalid>")
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    include(CPack)
endif()
