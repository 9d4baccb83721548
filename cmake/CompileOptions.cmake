# The kernels have two forms with the same bits (numerics/lanes.h): vectors, an extension of clang and, from version
# 12 on, GCC, for several instruction sets; and standard C++, for one.
set(fieldscan_portable ${FIELDSCAN_PORTABLE})
if(MSVC OR NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang"
                OR (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12)))
    set(fieldscan_portable ON)
endif()

# fieldscan_compile_options(TARGET): language, visibility and the options that fix the arithmetic, for every target
# except the peers of the benchmarks.
function(fieldscan_compile_options target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        UNITY_BUILD OFF  # unnamed namespaces of several files have the same names
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)

    if(fieldscan_portable)
        target_compile_definitions(${target} PRIVATE FIELDSCAN_PORTABLE)
    endif()

    if(MSVC)
        # Visual Studio 2022 and later fuse nothing with /fp:precise; clang-cl does.
        target_compile_options(${target} PRIVATE
            /fp:precise /utf-8 /permissive- /Zc:__cplusplus
            $<$<CXX_COMPILER_ID:Clang>:/clang:-ffp-contract=off>)
        target_compile_definitions(${target} PRIVATE NOMINMAX _CRT_SECURE_NO_WARNINGS)
        if(FIELDSCAN_DEVELOPER)
            target_compile_options(${target} PRIVATE /W4 /WX)
        endif()
        return()
    endif()

    # After CMAKE_CXX_FLAGS, which may have -ffast-math: then a NaN would be solved, and sorted first. When linking,
    # GCC adds start-up code to a program or shared library that sets denormals to 0 in the whole process.
    target_compile_options(${target} PRIVATE -fno-fast-math)
    target_link_options(${target} PRIVATE -fno-fast-math -fno-unsafe-math-optimizations)

    # Square roots are one instruction each; nothing reads errno after them.
    target_compile_options(${target} PRIVATE -fno-math-errno)

    # Fused multiply-add would change the last bit of results, differently on each processor. (After -fno-fast-math,
    # which allows it in clang.)
    target_compile_options(${target} PRIVATE -ffp-contract=off)

    # With -mfma GCC 12's vectorizer of straight-line code fuses nevertheless: neighbouring a*b-c and a*b+c become
    # vfmaddsub.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)

    # Functions of the library call each other directly; replacing one at load time is not supported.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)

    # CArray zero-fills storage before the constructor of an element runs. GCC may drop those stores, because the
    # lifetime of the element begins after them.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-lifetime-dse>)

    # The x87 unit of 32-bit x86 keeps excess precision between operations.
    if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86|i[3-6]86|x86_64|AMD64)$")
        target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
    endif()

    if(FIELDSCAN_DEVELOPER)
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
    endif()
endfunction()
