cmake_minimum_required(VERSION 3.25)

# Writes to LIST one CTest test for each GoogleTest suite of PROGRAM whose name matches SUITES.
# TIMEOUT is in seconds; EMULATOR stands in front of PROGRAM. Such tests take turns, since each of them measures.

# Suites in which no figure counts: a given tick frequency spares each of their runs the seconds of measuring it.
set(without_figures BadInput Construction ConstructionOfData Dialogue Faults FaultsInARow IniFile OutputFiles)

execute_process(COMMAND ${EMULATOR} ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE listing TIMEOUT 60
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(tests)
foreach(line IN LISTS lines)
    # "Suite." or "Prefix/Suite." at the start of a line; the cases below it are indented
    if(line MATCHES "^([A-Za-z0-9_/]+)\\." AND CMAKE_MATCH_1 MATCHES "${SUITES}")
        string(REGEX MATCH "^[A-Za-z0-9_/]+" suite "${line}")
        string(APPEND tests
            "add_test([=[run_tests.${suite}]=] ${EMULATOR} [=[${PROGRAM}]=] [=[--gtest_filter=${suite}.*]=])\n"
            "set_tests_properties([=[run_tests.${suite}]=] PROPERTIES TIMEOUT ${TIMEOUT}"
            " RESOURCE_LOCK measuring)\n")
        if(suite IN_LIST without_figures)
            string(APPEND tests
                "set_tests_properties([=[run_tests.${suite}]=] PROPERTIES ENVIRONMENT METRIG_MHZ=2000)\n")
        endif()
    endif()
endforeach()
file(WRITE ${LIST} "${tests}")
