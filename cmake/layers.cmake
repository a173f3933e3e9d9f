# The floors of the framework, the folders of perflib/src. A floor sees its own headers and those of the floors
# that it names, with theirs: an include against the order does not compile.

# add_layer(<folder> [USES <folder> ...])
function(add_layer name)
    cmake_parse_arguments(LAYER "" "" "USES" ${ARGN})
    # "measure/mrtool.h" is found in a folder that holds a link to measure/ and nothing else.
    set(root ${PROJECT_BINARY_DIR}/layers/${name})
    file(MAKE_DIRECTORY ${root})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/perflib/src/${name} ${root}/${name} SYMBOLIC)
    file(GLOB sources CONFIGURE_DEPENDS perflib/src/${name}/*.cpp)
    list(REMOVE_ITEM sources ${main_source})
    add_library(layer_${name} OBJECT ${sources})
    target_include_directories(layer_${name} PUBLIC ${root})
    list(TRANSFORM LAYER_USES PREPEND layer_)
    target_link_libraries(layer_${name} PUBLIC ${LAYER_USES} PRIVATE metrig_warnings)
    target_compile_options(layer_${name} PRIVATE ${fixed_addresses})
    target_sources(perflib PRIVATE $<TARGET_OBJECTS:layer_${name}>)
endfunction()
