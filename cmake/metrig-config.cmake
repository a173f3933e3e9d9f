# find_package(metrig): metrig_add_program() in the width of the project. Both widths may be installed.

if(NOT CMAKE_SIZEOF_VOID_P)
    set(metrig_FOUND FALSE)
    set(metrig_NOT_FOUND_MESSAGE "its width is that of the compiler: enable CXX before find_package(metrig)")
    return()
endif()
math(EXPR metrig_bits "8 * ${CMAKE_SIZEOF_VOID_P}")
if(NOT EXISTS ${CMAKE_CURRENT_LIST_DIR}/metrig-${metrig_bits}.cmake)
    set(metrig_FOUND FALSE)
    set(metrig_NOT_FOUND_MESSAGE "Metrig is not installed here in ${metrig_bits} bits")
    return()
endif()
include(${CMAKE_CURRENT_LIST_DIR}/metrig-${metrig_bits}.cmake)
# metrig::zylch, metrig::zyls and metrig::zylcore, where the stand-in is installed too
include(${CMAKE_CURRENT_LIST_DIR}/metrig-standin-${metrig_bits}.cmake OPTIONAL)
include(${CMAKE_CURRENT_LIST_DIR}/metrig_add_program.cmake)
unset(metrig_bits)
