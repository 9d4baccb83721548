# Debian packages by cpack, one a component: libfieldscan0.1, libfieldscan-dev and fieldscan. They install into /usr/lib,
# not into the folder of the processor below it, since the same build makes the archives.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE fieldscan)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})  # the program's library is not installed yet
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(fieldscan_about "fieldscan serves the controller software of a scanning image total station, an
instrument that measures angles and distances, turns under motor control and
carries a camera: computations of surveying, least-squares adjustment, cameras
with lens distortion, polylines, scan areas, the instrument's strings, and the
application's files.

")

# While the major version is 0, every minor version has an SOVERSION of its own.
set(CPACK_DEBIAN_FIELDSCAN_LIBRARY_PACKAGE_NAME libfieldscan${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_DEBIAN_FIELDSCAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_FIELDSCAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/triggers)
set(CPACK_DEBIAN_FIELDSCAN_LIBRARY_DESCRIPTION "computations and files of a scanning total station
${fieldscan_about}This package has the shared library.")

set(CPACK_DEBIAN_FIELDSCAN_DEVELOPMENT_PACKAGE_NAME libfieldscan-dev)
set(CPACK_DEBIAN_FIELDSCAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_FIELDSCAN_DEVELOPMENT_DEPENDS fieldscan_library)
set(CPACK_DEBIAN_FIELDSCAN_DEVELOPMENT_DESCRIPTION "computations and files of a scanning total station (development)
${fieldscan_about}This package has the headers, and the files for CMake and pkg-config.")

set(CPACK_DEBIAN_FIELDSCAN_PROGRAM_PACKAGE_NAME fieldscan)
set(CPACK_DEBIAN_FIELDSCAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_COMPONENT_FIELDSCAN_PROGRAM_DEPENDS fieldscan_library)
set(CPACK_DEBIAN_FIELDSCAN_PROGRAM_DESCRIPTION "program for the files of a scanning total station
${fieldscan_about}This package has the program fieldscan, which shows, checks, draws and converts
the application's files and makes the library's computations with them.")

string(TIMESTAMP fieldscan_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/complete_packages.cmake.in
    ${PROJECT_BINARY_DIR}/debian/complete_packages.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/debian/complete_packages.cmake)
