# What script/bench runs.

add_custom_target(bench DEPENDS metrig)

# Program bench_<name> of bench/<name>.cpp and the sources that follow.
function(add_bench name)
    add_executable(bench_${name} ${ARGN} bench/${name}.cpp)
    target_link_libraries(bench_${name} PRIVATE perflib ${ZYL_LIBRARIES} metrig_warnings)
    add_dependencies(bench bench_${name})
endfunction()

add_bench(loops)
add_library(steps SHARED bench/steps.cpp)
add_bench(boundary)
target_link_libraries(bench_boundary PRIVATE steps)
add_bench(framework)
add_bench(walks ${suite_sources})
target_include_directories(bench_walks PRIVATE perf)
add_bench(paths ${suite_sources})
target_include_directories(bench_paths PRIVATE perf)

# Google Benchmark is there in the machine's own width alone.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    find_package(benchmark REQUIRED)
    add_bench(instruments ${suite_sources})
    target_include_directories(bench_instruments PRIVATE perf)
    target_link_libraries(bench_instruments PRIVATE benchmark::benchmark)
    # Bodies of known length: by an instrument as the program is, and by other means.
    add_executable(bench_chains bench/chains.cpp ${main_source})
    target_link_options(bench_chains PRIVATE -Wl,--no-as-needed)
    target_link_libraries(bench_chains PRIVATE perflib ${ZYL_LIBRARIES} metrig_warnings)
    add_dependencies(bench bench_chains)
    add_bench(figures)
    target_link_libraries(bench_figures PRIVATE benchmark::benchmark)
endif()
