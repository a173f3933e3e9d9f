# What cmake --install puts where. The builds of both widths and metrig-lab go into one tree, side by side: programs
# into bin, those of 64 bits as <name>-x86-64; objects into lib/<triplet>; the rest is of both. Nothing names the
# tree, so it can be moved. Components: metrig, lab (lab/CMakeLists.txt), dev, standin.

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(CMAKE_INSTALL_LIBDIR lib/i386-linux-gnu)
    set(width_suffix "")
    set(width_bits 32)
else()
    set(CMAKE_INSTALL_LIBDIR lib/x86_64-linux-gnu)
    set(width_suffix -x86-64)
    set(width_bits 64)
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/metrig)
set(package ${CMAKE_INSTALL_DATADIR}/cmake/metrig)

# A program under the name of its width. It is installed as it was built, with the way to its libraries in the
# installed tree in it.
function(install_program target)
    set(name ${target}${width_suffix})
    install(PROGRAMS $<TARGET_FILE:${target}> DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME ${name} COMPONENT metrig)
    set(installed "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${name}")
    install(CODE "if(CMAKE_INSTALL_DO_STRIP)
        execute_process(COMMAND \"${CMAKE_STRIP}\" \"${installed}\" COMMAND_ERROR_IS_FATAL ANY)
    endif()" COMPONENT metrig)
endfunction()

file(RELATIVE_PATH way ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(metrig PROPERTIES BUILD_RPATH "$ORIGIN/${way}")
install_program(metrig)
install_program(metrig-bare)
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/metrig/examples COMPONENT metrig)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT metrig PATTERN man EXCLUDE)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT metrig)
install(FILES zylch/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/zylch COMPONENT metrig)

# Floors and binding become one folder of headers; what the framework needs of the library's stands beside them.
install(TARGETS perflib metrig_program metrig_platform EXPORT metrig
    ARCHIVE COMPONENT dev
    INCLUDES DESTINATION ${headers})
install(DIRECTORY perflib/src/ perflib/binding/ DESTINATION ${headers} COMPONENT dev FILES_MATCHING PATTERN "*.h")
install(FILES perf/p_common.h ${ZYL_INCLUDE}/zyltypes.h ${ZYL_INCLUDE}/zylcore.h DESTINATION ${headers} COMPONENT dev)
install(EXPORT metrig NAMESPACE metrig:: FILE metrig-${width_bits}.cmake DESTINATION ${package} COMPONENT dev)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/metrig-config-version.cmake
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)  # metrig-config.cmake sees to the width
install(FILES cmake/metrig-config.cmake cmake/metrig_add_program.cmake ${PROJECT_BINARY_DIR}/metrig-config-version.cmake
    DESTINATION ${package} COMPONENT dev)

set(to_install metrig metrig-bare perflib metrig_program metrig_platform)
if(NOT ZYL_ROOT)
    set_target_properties(zylch zyls zylcore PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS zylch zyls zylcore EXPORT metrig-standin
        LIBRARY COMPONENT standin
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zylch)
    install(DIRECTORY zylch/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zylch COMPONENT standin)
    install(EXPORT metrig-standin NAMESPACE metrig:: FILE metrig-standin-${width_bits}.cmake
        DESTINATION ${package} COMPONENT standin)
    list(APPEND to_install ${ZYL_LIBRARIES})
endif()

# What has to be built before cmake --install.
add_custom_target(to_install DEPENDS ${to_install})
