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

    # Fused multiply-add would change the last bit of results, differently on each processor.
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
