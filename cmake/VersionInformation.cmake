# fieldscan_version_information(TARGET dll|exe DESCRIPTION): version and description, which Windows shows as the properties
# of the file; nothing on other systems.
if(WIN32)
    enable_language(RC)
endif()

function(fieldscan_version_information target extension description)
    if(WIN32)
        set(file_type 1)  # a program
        if(extension STREQUAL "dll")
            set(file_type 2)
        endif()
        configure_file(${PROJECT_SOURCE_DIR}/cmake/version_information.rc.in
            ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc @ONLY)
        target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
    endif()
endfunction()
