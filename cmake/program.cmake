# What programs with suites of their own are made of, in this build and where it is installed:
#   metrig::program   main and the common parameters, from archives: the suites' objects stand in front
#   metrig::perflib   the framework and the binding
#   metrig::platform  what the framework asks of the library under test where that is another one, or none

add_library(metrig_program STATIC ${main_source} perf/p_common.cpp)
target_include_directories(metrig_program INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/perf>)
target_compile_options(metrig_program INTERFACE ${suite_options})
target_link_options(metrig_program INTERFACE -Wl,-z,now)
target_link_libraries(metrig_program PUBLIC perflib PRIVATE $<BUILD_INTERFACE:metrig_warnings>)
set_target_properties(metrig_program PROPERTIES OUTPUT_NAME metrig-program EXPORT_NAME program)

add_library(metrig_platform STATIC ${ZYL_PLATFORM_SOURCES})
target_include_directories(metrig_platform PRIVATE ${ZYL_INCLUDE})
target_compile_options(metrig_platform PRIVATE ${fixed_addresses})
target_link_libraries(metrig_platform PRIVATE $<BUILD_INTERFACE:metrig_warnings>)
set_target_properties(metrig_platform PROPERTIES OUTPUT_NAME metrig-platform EXPORT_NAME platform)

# Of whoever includes the framework's headers; within this build the flags of every target have them.
target_compile_features(perflib INTERFACE cxx_std_20)
target_compile_options(perflib INTERFACE ${shared_options})
target_compile_definitions(perflib INTERFACE ${shared_definitions})

add_library(metrig::program ALIAS metrig_program)
add_library(metrig::perflib ALIAS perflib)
add_library(metrig::platform ALIAS metrig_platform)
include(cmake/metrig_add_program.cmake)
