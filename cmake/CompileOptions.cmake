# fieldscan_compile_options(TARGET): how everything in this project is compiled.
function(fieldscan_compile_options target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        UNITY_BUILD OFF  # files have the same names in their unnamed namespaces
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)

    # Contraction into fused multiply-add would change the last bit of the documented arithmetic, and differ
    # between targets.
    target_compile_options(${target} PRIVATE -ffp-contract=off)

    # GCC's vectorizer of straight-line code fuses all the same: neighbouring a*b-c and a*b+c become one
    # instruction wherever the processor has it (vfmaddsub, GCC 12 with -mfma).
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)

    # Functions of the library call each other directly: nobody replaces them at load time.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)

    # Arrays zero-fill storage before the constructor of an element runs; GCC may otherwise drop those stores,
    # since the life of the element begins after them.
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
