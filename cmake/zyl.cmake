# The library family. Gives ZYL_INCLUDE, its headers; ZYL_LIBRARIES, its shared objects in the order of the
# link, which add_zyl_libraries() defines; ZYL_PLATFORM_SOURCES, what stands in for it in a program without it.

set(zyl_folder ${PROJECT_SOURCE_DIR}/zylch)
set(ZYL_INCLUDE ${zyl_folder}/include)
if(ZYL_ROOT)
    set(ZYL_INCLUDE ${ZYL_ROOT}/include)
endif()
set(ZYL_LIBRARIES zylch zyls zylcore)

# Processor registers and counters: the sources of zylcore that need nothing of the rest of the library.
set(ZYL_PLATFORM_SOURCES cache_size.cpp clocks.cpp cpuid.cpp fpu.cpp)
list(TRANSFORM ZYL_PLATFORM_SOURCES PREPEND ${zyl_folder}/core/)

# One shared object of the stand-in, from the sources of `folder`.
function(add_zyl_library name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
    add_library(${name} SHARED ${sources})
    set_target_properties(${name} PROPERTIES SOVERSION 10 CXX_VISIBILITY_PRESET hidden)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${ZYL_INCLUDE}>)
    # A plain path has to stay plain beside the SSE2 and AVX2 paths, or the feature mask would choose between
    # two of the same. The library is called from C, so nothing in it may need the C++ run time.
    target_compile_options(${name} PRIVATE
        -fno-tree-vectorize -fno-tree-slp-vectorize
        $<$<CXX_COMPILER_ID:GNU>:-fno-tree-loop-distribute-patterns>
        -fno-exceptions -fno-rtti -fno-threadsafe-statics)
    target_link_options(${name} PRIVATE -Wl,--as-needed $<$<NOT:$<CONFIG:Asan,Fuzz>>:-Wl,-z,defs>)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:metrig_warnings>)
endfunction()

# One shared object of a library that is there already.
function(find_zyl_library name)
    find_library(${name}_file NAMES lib${name}.so.10 lib${name}.so PATHS ${ZYL_ROOT}/lib
                 NO_DEFAULT_PATH NO_CACHE REQUIRED)
    add_library(${name} SHARED IMPORTED)
    set_target_properties(${name} PROPERTIES IMPORTED_LOCATION ${${name}_file})
endfunction()

# Defines ZYL_LIBRARIES: what is found under ZYL_ROOT, or the stand-in.
macro(add_zyl_libraries)
    if(ZYL_ROOT)
        find_zyl_library(zylch)
        find_zyl_library(zyls)
        find_zyl_library(zylcore)
    else()
        add_zyl_library(zylcore ${zyl_folder}/core)
        add_zyl_library(zyls ${zyl_folder}/s)
        add_zyl_library(zylch ${zyl_folder}/ch)
        target_link_libraries(zylch PRIVATE zylcore)
    endif()
endmacro()
