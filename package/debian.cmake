# Before a component becomes a package: what Debian asks to stand in each.

get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
file(READ ${root}/CHANGELOG.md changes)
string(REGEX MATCH "\n## ${CPACK_PACKAGE_VERSION} \\(([0-9-]+)\\)\n" heading "${changes}")
if(NOT heading)
    message(FATAL_ERROR "CHANGELOG.md says nothing of version ${CPACK_PACKAGE_VERSION}")
endif()
execute_process(COMMAND date -R -u -d ${CMAKE_MATCH_1} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)

# Compresses the files as Debian does.
function(compress)
    if(ARGN)
        execute_process(COMMAND gzip -9nf ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
    endif()
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} key)
    set(package ${CPACK_DEBIAN_${key}_PACKAGE_NAME})
    set(usr ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
    set(documents ${usr}/share/doc/${package})

    file(WRITE ${documents}/changelog.Debian
        "metrig (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
        "  * Version ${CPACK_PACKAGE_VERSION}: see changelog.gz.\n\n"
        " -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}\n")
    file(COPY_FILE ${root}/CHANGELOG.md ${documents}/changelog)
    file(GLOB pages ${usr}/share/man/man1/*.1)
    compress(${documents}/changelog.Debian ${documents}/changelog ${pages})

    file(COPY_FILE ${root}/package/copyright ${documents}/copyright)
    if(component STREQUAL lab)
        # whose headers are part of the program
        foreach(headers libcli11-dev nlohmann-json3-dev)
            if(EXISTS /usr/share/doc/${headers}/copyright)
                file(READ /usr/share/doc/${headers}/copyright text)
                file(APPEND ${documents}/copyright "\n\nCode of ${headers}:\n\n${text}")
            endif()
        endforeach()
        file(GLOB licences ${root}/third_party/*/LICEN[CS]E*)
        foreach(licence IN LISTS licences)
            cmake_path(GET licence PARENT_PATH name)
            cmake_path(GET name FILENAME name)
            file(READ ${licence} text)
            file(APPEND ${documents}/copyright "\n\nCode of ${name}:\n\n${text}")
        endforeach()
    endif()
    set(overrides ${root}/package/overrides/${package})
    if(EXISTS ${overrides})
        file(MAKE_DIRECTORY ${usr}/share/lintian/overrides)
        file(COPY_FILE ${overrides} ${usr}/share/lintian/overrides/${package})
    endif()
endforeach()
