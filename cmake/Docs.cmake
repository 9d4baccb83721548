# The target docs: pages in docs/html of the build folder, and a check of their links where Python is installed.
find_program(fieldscan_doxygen doxygen)
find_program(fieldscan_python python3)
mark_as_advanced(fieldscan_doxygen fieldscan_python)

if(NOT fieldscan_doxygen)
    add_custom_target(docs
        COMMAND ${CMAKE_COMMAND} -E echo "the pages need doxygen; install it, then configure again"
        COMMAND ${CMAKE_COMMAND} -E false
        VERBATIM)
    return()
endif()

set(fieldscan_pages ${CMAKE_BINARY_DIR}/docs/html)
set(check_pages "")
if(fieldscan_python)
    set(check_pages COMMAND ${fieldscan_python} ${PROJECT_SOURCE_DIR}/tests/docs/check_pages ${fieldscan_pages})
endif()
configure_file(docs/Doxyfile.in Doxyfile @ONLY)
add_custom_target(docs
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${fieldscan_pages}  # no pages of earlier names
    COMMAND ${fieldscan_doxygen} ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile
    # What the pages link to.
    COMMAND ${CMAKE_COMMAND} -E copy_directory examples ${fieldscan_pages}/examples
    COMMAND ${CMAKE_COMMAND} -E copy_directory docs/samples ${fieldscan_pages}/samples
    ${check_pages}
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    VERBATIM)
