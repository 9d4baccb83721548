# Packages by cpack in the build folder: an archive of everything installed (ZIP for Windows), Debian packages where
# their tools are, and by `cpack --config CPackSourceConfig.cmake` an archive of the sources.
set(FIELDSCAN_MAINTAINER "The developers of fieldscan <developers@fieldscan.invalid>" CACHE STRING
    "Name and address in the packages")

set(CPACK_PACKAGE_NAME fieldscan)
set(CPACK_PACKAGE_CONTACT "${FIELDSCAN_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX "")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL fieldscan_development)
if(BUILD_SHARED_LIBS)
    list(APPEND CPACK_COMPONENTS_ALL fieldscan_library)
endif()
if(FIELDSCAN_BUILD_TOOLS)
    list(APPEND CPACK_COMPONENTS_ALL fieldscan_program)
endif()

find_program(fieldscan_shlibdeps dpkg-shlibdeps)  # Debian's dpkg-dev, which finds what a package depends on
mark_as_advanced(fieldscan_shlibdeps)
set(CPACK_GENERATOR TGZ)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
elseif(fieldscan_shlibdeps AND BUILD_SHARED_LIBS AND NOT CMAKE_CROSSCOMPILING)
    list(APPEND CPACK_GENERATOR DEB)
    include(cmake/debian/Packages.cmake)
endif()

set(CPACK_SOURCE_GENERATOR TGZ)
string(REGEX REPLACE "([][+.*^$()|?\\])" "\\\\\\1" sources "${PROJECT_SOURCE_DIR}")
string(REGEX REPLACE "([][+.*^$()|?\\])" "\\\\\\1" binaries "${PROJECT_BINARY_DIR}")
set(CPACK_SOURCE_IGNORE_FILES "^${sources}/(\\.git|build|out)(/|$)" "^${binaries}/")

include(CPack)
