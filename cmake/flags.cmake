# Flags of every target, GoogleTest included. Flags of one target stand with it.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# Release is CMake's -O3 -DNDEBUG otherwise. Figures are of -O2, and checks stay in.
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2")

# The build type of the address-checked build. A finding ends the program, or a test would not fail by it.
set(checks "-fsanitize=address,undefined")
set(CMAKE_CXX_FLAGS_ASAN "-O1 -g ${checks} -fno-sanitize-recover=all -fno-omit-frame-pointer")
set(CMAKE_EXE_LINKER_FLAGS_ASAN ${checks})
set(CMAKE_SHARED_LINKER_FLAGS_ASAN ${checks})
# The same for clang with what libFuzzer needs to see where an input went.
set(CMAKE_CXX_FLAGS_FUZZ "${CMAKE_CXX_FLAGS_ASAN} -fsanitize=fuzzer-no-link -DFUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION")
set(CMAKE_EXE_LINKER_FLAGS_FUZZ ${checks})
set(CMAKE_SHARED_LINKER_FLAGS_FUZZ ${checks})

# A build within another project's has that one's build type, and figures are of -O2 all the same.
if(NOT PROJECT_IS_TOP_LEVEL)
    add_compile_options(-O2)
endif()

# No link-time optimisation: it would look across the objects and pull code into the timed stretch.
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION OFF)

# What code that includes the framework's headers shares with it, out of this tree too. Fused multiply-add would
# give other last bits on machines that have it.
set(shared_options -ffp-contract=off)
set(shared_definitions)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    list(APPEND shared_definitions _FILE_OFFSET_BITS=64 _TIME_BITS=64)  # dates hold past 2038
    # Arithmetic goes through SSE2: the x87 control word is under test in this program, with zero divide
    # unmasked, so x87 code of the program's own could raise a signal.
    list(APPEND shared_options -msse2 -mfpmath=sse)
endif()
add_compile_options(${shared_options})
add_compile_definitions(${shared_definitions})

# Of suites. A guess at the target of a virtual call would put a comparison and jumps between two clock reads.
set(suite_options $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-devirtualize-speculatively>)

# RUNPATH and not RPATH: LD_LIBRARY_PATH must be able to put another library in place.
add_link_options(-Wl,--enable-new-dtags)

# All functions are looked up at the start: a library that lacks one is named before anything was written, and
# no first call pays for the search.
add_link_options(-Wl,-z,now)

add_library(metrig_warnings INTERFACE)
target_compile_options(metrig_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${METRIG_WERROR}>:-Werror>)
