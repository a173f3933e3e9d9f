# The tests, each program from the sources that stand in its folder.

include(cmake/googletest.cmake)

# Of binutils, whatever the compiler: tests read its form of a listing.
find_program(METRIG_OBJDUMP objdump REQUIRED)

# There are no symbols of the 32-bit system libraries for it, so it runs in 64 bits alone.
find_program(METRIG_VALGRIND valgrind REQUIRED)

# What tests may ask of the tree they run in.
add_library(test_surroundings INTERFACE)
target_include_directories(test_surroundings INTERFACE ${CMAKE_SOURCE_DIR}/tests)
target_compile_definitions(test_surroundings INTERFACE
    METRIG_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    METRIG_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    METRIG_LIB_DIR="${CMAKE_LIBRARY_OUTPUT_DIRECTORY}"
    METRIG_EMULATOR="${METRIG_EMULATOR}"
    METRIG_OBJDUMP="${METRIG_OBJDUMP}"
    METRIG_VALGRIND="${METRIG_VALGRIND}")

# It is not the speed of the tests themselves that counts, and optimised they would be most of the build.
set(quickly_built -O0 $<$<CONFIG:Asan>:-g1>)
target_compile_options(test_surroundings INTERFACE ${quickly_built})
target_compile_options(gtest PRIVATE ${quickly_built})

# Defines executable `name` from `sources`, linked with the rest of the arguments; nothing without sources.
function(add_test_program name sources)
    if(NOT sources)
        return()
    endif()
    file(GLOB support CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/support/*.cpp)
    add_executable(${name} ${sources} ${support})
    target_link_libraries(${name} PRIVATE ${ARGN} GTest::gtest_main test_surroundings metrig_warnings)
    target_precompile_headers(${name} PRIVATE <gtest/gtest.h>)  # most of what a test compiles
endfunction()

# Every test case of unit test program `name` is a test of its own.
function(discover_cases name seconds)
    if(TARGET ${name})
        gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT ${seconds})
    endif()
endfunction()

file(GLOB_RECURSE unit_sources CONFIGURE_DEPENDS tests/unit/*_test.cpp)
set(zylch_test_sources ${unit_sources})
list(FILTER unit_sources EXCLUDE REGEX "/tests/unit/zylch/")
list(FILTER zylch_test_sources INCLUDE REGEX "/tests/unit/zylch/")

add_test_program(unit_tests "${unit_sources}" perflib ${ZYL_LIBRARIES})
discover_cases(unit_tests 60)
if(NOT ZYL_ROOT)
    add_test_program(zylch_tests "${zylch_test_sources}" ${ZYL_LIBRARIES})
    discover_cases(zylch_tests 120)
endif()

# Whole-program tests. The cases of a suite share one run of the program, so a suite is one test here. Of the
# address-checked programs only the start is of interest: their figures and their code are not the product's.
file(GLOB run_sources CONFIGURE_DEPENDS tests/run/*_test.cpp)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    list(FILTER run_sources EXCLUDE REGEX "/memcheck_test.cpp$")
endif()
if(TARGET metrig)
    add_test_program(run_tests "${run_sources}")
endif()
if(TARGET run_tests)
    add_dependencies(run_tests metrig metrig-bare)
    # Suites of the tests, each a program of its own: metrig-faulty of faulty_suite.cpp.
    file(GLOB test_suites CONFIGURE_DEPENDS tests/suites/*_suite.cpp)
    foreach(source IN LISTS test_suites)
        get_filename_component(suite ${source} NAME_WE)
        string(REPLACE _suite "" program metrig-${suite})
        add_executable(${program} ${source} ${main_source})
        target_link_libraries(${program} PRIVATE perflib ${ZYL_LIBRARIES} metrig_warnings)
        add_dependencies(run_tests ${program})
    endforeach()
    # What takes the place of functions of the library: one shared object of each source.
    file(GLOB fault_sources CONFIGURE_DEPENDS tests/faults/*.cpp)
    foreach(source IN LISTS fault_sources)
        get_filename_component(fault ${source} NAME_WE)
        add_library(${fault} MODULE ${source})
        target_include_directories(${fault} PRIVATE ${ZYL_INCLUDE})
        target_link_libraries(${fault} PRIVATE metrig_warnings)
        add_dependencies(run_tests ${fault})
    endforeach()
    set(run_list ${CMAKE_BINARY_DIR}/run_tests_suites.cmake)
    add_custom_command(TARGET run_tests POST_BUILD VERBATIM
        COMMAND ${CMAKE_COMMAND} -DEMULATOR=${METRIG_EMULATOR} -DPROGRAM=$<TARGET_FILE:run_tests> -DLIST=${run_list}
                -DTIMEOUT=300 "-DSUITES=$<IF:$<CONFIG:Asan>,^Construction,.>"
                -P ${CMAKE_SOURCE_DIR}/cmake/discover_suites.cmake)
    file(WRITE ${CMAKE_BINARY_DIR}/run_tests.cmake
        "if(EXISTS \"${run_list}\")\n  include(\"${run_list}\")\n"
        "else()\n  add_test(run_tests_NOT_BUILT run_tests_NOT_BUILT)\nendif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_BINARY_DIR}/run_tests.cmake)
endif()

# The suite that docs/writing-a-suite.md builds, from the page itself. It runs as the page runs it, and has to give
# the page's table but for figures.
set(page ${CMAKE_SOURCE_DIR}/docs/writing-a-suite.md)
set(page_suite ${CMAKE_BINARY_DIR}/page_suite.cpp)
set(cut_blocks ${CMAKE_SOURCE_DIR}/cmake/cut_blocks.cmake)
add_custom_command(OUTPUT ${page_suite} VERBATIM DEPENDS ${page} ${cut_blocks}
    COMMAND ${CMAKE_COMMAND} -DPAGE=${page} -DSOURCE=${page_suite} -P ${cut_blocks})
add_executable(metrig-page ${page_suite} perf/p_common.cpp ${main_source})
target_include_directories(metrig-page PRIVATE perf)
target_link_libraries(metrig-page PRIVATE perflib ${ZYL_LIBRARIES} metrig_warnings)
add_test(NAME metrig_page
    COMMAND ${CMAKE_COMMAND} -DPAGE=${page} -DEMULATOR=${METRIG_EMULATOR} -DPROGRAM=$<TARGET_FILE:metrig-page>
            -DFOLDER=${CMAKE_BINARY_DIR}/page -P ${CMAKE_SOURCE_DIR}/tests/run/page_test.cmake)
set_tests_properties(metrig_page PROPERTIES TIMEOUT 60 RESOURCE_LOCK measuring)

add_test(NAME docs_names COMMAND ${CMAKE_SOURCE_DIR}/tests/docs/names)
set_tests_properties(docs_names PROPERTIES TIMEOUT 60)
