# The manual page of a program, from its template and what the program says of itself; its completion; and a check of
# both against its sources.

# Both are installed with COMPONENT, also under the names of the program's other forms, ALIASES.
function(add_manual program)
    cmake_parse_arguments(PARSE_ARGV 1 manual "" "COMPONENT" "ALIASES")
    if(CMAKE_BUILD_TYPE MATCHES "Asan|Fuzz")
        return()
    endif()
    set(page ${PROJECT_BINARY_DIR}/man/${program}.1)
    set(template ${PROJECT_SOURCE_DIR}/docs/man/${program}.1.in)
    set(fill ${PROJECT_SOURCE_DIR}/docs/man/fill)
    set(changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)
    add_custom_command(OUTPUT ${page} VERBATIM DEPENDS ${program} ${template} ${fill} ${changelog}
        COMMAND ${fill} ${template} ${changelog} ${PROJECT_VERSION} ${METRIG_EMULATOR} $<TARGET_FILE:${program}>
                > ${page})
    add_custom_target(${program}-manual ALL DEPENDS ${page})
    add_dependencies(to_install ${program}-manual)

    include(GNUInstallDirs)
    set(pages ${CMAKE_INSTALL_MANDIR}/man1)
    set(completions ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${page} DESTINATION ${pages} COMPONENT ${manual_COMPONENT})
    foreach(name IN LISTS program manual_ALIASES)
        install(FILES ${PROJECT_SOURCE_DIR}/completion/${program} DESTINATION ${completions} RENAME ${name}
            COMPONENT ${manual_COMPONENT})
        if(NOT name STREQUAL program)
            file(WRITE ${PROJECT_BINARY_DIR}/man/${name}.1 ".so man1/${program}.1\n")
            install(FILES ${PROJECT_BINARY_DIR}/man/${name}.1 DESTINATION ${pages} COMPONENT ${manual_COMPONENT})
        endif()
    endforeach()

    if(METRIG_TESTS AND NOT METRIG_EMULATOR)
        add_test(NAME ${program}_manual
            COMMAND ${PROJECT_SOURCE_DIR}/tests/manual/check ${program} ${page} $<TARGET_FILE:${program}>)
        set_tests_properties(${program}_manual PROPERTIES TIMEOUT 60)
    endif()
endfunction()
