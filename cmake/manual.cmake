# The manual page of a program, from its template and what the program says of itself, and a check of page and
# completion against its sources.
function(add_manual program)
    if(CMAKE_BUILD_TYPE MATCHES "Asan|Fuzz")
        return()
    endif()
    set(page ${CMAKE_BINARY_DIR}/man/${program}.1)
    set(template ${CMAKE_SOURCE_DIR}/docs/man/${program}.1.in)
    set(fill ${CMAKE_SOURCE_DIR}/docs/man/fill)
    set(changelog ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/man)
    add_custom_command(OUTPUT ${page} VERBATIM DEPENDS ${program} ${template} ${fill} ${changelog}
        COMMAND ${fill} ${template} ${changelog} ${PROJECT_VERSION} ${METRIG_EMULATOR} $<TARGET_FILE:${program}>
                > ${page})
    add_custom_target(${program}-manual ALL DEPENDS ${page})
    if(METRIG_TESTS AND NOT METRIG_EMULATOR)
        add_test(NAME ${program}_manual
            COMMAND ${CMAKE_SOURCE_DIR}/tests/manual/check ${program} ${page} $<TARGET_FILE:${program}>)
        set_tests_properties(${program}_manual PROPERTIES TIMEOUT 60)
    endif()
endfunction()
