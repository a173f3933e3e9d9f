# Debian packages of the builds x86, x86-64 and lab together, each from the components of that name:
#   cpack --config package/cpack.cmake -B <folder>      see script/package

get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
file(STRINGS ${root}/build/lab/CMakeCache.txt version REGEX "^CMAKE_PROJECT_VERSION:")
string(REGEX REPLACE ".*=" "" CPACK_PACKAGE_VERSION "${version}")

set(CPACK_GENERATOR DEB)
set(CPACK_CMAKE_GENERATOR Ninja)
set(CPACK_PACKAGE_NAME metrig)
set(CPACK_PACKAGE_VENDOR Metrig)
set(CPACK_PACKAGE_DESCRIPTION "Metrig")  # asked for, and taken from each component
set(CPACK_TOPLEVEL_TAG debian)
set(CPACK_PACKAGE_FILE_NAME metrig-${CPACK_PACKAGE_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)  # metrig-lab takes functions from the dynamic symbols, which stay
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL metrig lab dev standin)
set(CPACK_DEB_COMPONENT_INSTALL ON)
# the 64 bits first: what both builds install is then that of the product
set(CPACK_INSTALL_CMAKE_PROJECTS
    ${root}/build/x86-64 metrig ALL /
    ${root}/build/x86 metrig ALL /
    ${root}/build/lab metrig ALL /)
set(CPACK_PRE_BUILD_SCRIPTS ${root}/package/debian.cmake)

set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE metrig)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Metrig's developers <metrig@example.org>")
if(NOT "$ENV{METRIG_MAINTAINER}" STREQUAL "")
    set(CPACK_DEBIAN_PACKAGE_MAINTAINER "$ENV{METRIG_MAINTAINER}")
endif()
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# the library under test is none of the system's: the stand-in, or whoever provides it
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${root}/build/x86-64/lib ${root}/build/x86/lib)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(full_version "${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

set(CPACK_DEBIAN_METRIG_PACKAGE_NAME metrig)
set(CPACK_DEBIAN_METRIG_PACKAGE_DEPENDS "libzylch-standin (= ${full_version}) | libzylch10")
set(CPACK_DEBIAN_METRIG_PACKAGE_SUGGESTS "metrig-lab")
set(CPACK_DEBIAN_METRIG_DESCRIPTION "measures the functions of a string library
Calls each function over a walk of parameter values and data sizes, finds by
itself how many loops and calls give the accuracy asked for, and reports
processor clocks per element. A crash in the library never costs a run.

The program is of 32 bits; that of 64 bits stands beside it.")

set(CPACK_DEBIAN_LAB_PACKAGE_NAME metrig-lab)
set(CPACK_DEBIAN_LAB_PACKAGE_DEPENDS "metrig (= ${full_version})")
set(CPACK_DEBIAN_LAB_DESCRIPTION "tells which functions a change made slower or faster
Two instruments, one on each build of a library, take turns of microseconds,
so that what else the machine does falls out of the ratio. It says what it
can stand for, and what it cannot tell with the reason.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME metrig-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libc6-dev")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "cmake, g++, g++-multilib")
set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS "metrig-lab")
set(CPACK_DEBIAN_DEV_DESCRIPTION "suites of your own for metrig
Headers, archives in 32 and 64 bits, and a package for CMake that builds an
instrument with suites of your own, over any library.")

set(CPACK_DEBIAN_STANDIN_PACKAGE_NAME libzylch-standin)
set(CPACK_DEBIAN_STANDIN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_STANDIN_PACKAGE_PROVIDES "libzylch10")
set(CPACK_DEBIAN_STANDIN_PACKAGE_CONTROL_EXTRA ${root}/package/triggers)
set(CPACK_DEBIAN_STANDIN_DESCRIPTION "stand-in for the string library zylch
The three shared objects in 32 and 64 bits, with their headers. They compute
the right answers; their speed says nothing about the library they stand for.")
