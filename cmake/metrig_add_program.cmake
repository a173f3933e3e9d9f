# An instrument with the suites of these sources, over the functions of these libraries or of the sources:
#   metrig_add_program(<name> <source> ... [LIBRARIES <library> ...])
# What is measured is a call from a suite, so the suites' code is that of Metrig's own whatever the project's
# build type: -O2, at fixed addresses, without link-time optimisation. Functions under test that need other
# flags stand in a library.
function(metrig_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 program "" "" "LIBRARIES")
    if(NOT program_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "metrig_add_program(${name}): no source with a suite")
    endif()
    # Sources, so objects: their initialisers run before the framework's, in this order, and none is dropped.
    add_executable(${name} ${program_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES
        POSITION_INDEPENDENT_CODE OFF
        INTERPROCEDURAL_OPTIMIZATION OFF)
    target_compile_options(${name} PRIVATE -O2 -fno-lto)
    # The libraries stand before metrig::platform: one that has its functions takes its place.
    target_link_libraries(${name} PRIVATE metrig::program metrig::perflib ${program_LIBRARIES} metrig::platform)
endfunction()
