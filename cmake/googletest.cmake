# GoogleTest from its source package, built with the flags of the build.

set(METRIG_GOOGLETEST /usr/src/googletest CACHE PATH "Sources of GoogleTest")
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(${METRIG_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
include(GoogleTest)
