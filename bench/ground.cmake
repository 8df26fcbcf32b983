# The ground profile: a grid over 1M triangles and a 10 km road through it.
add_executable(bench_ground ${CMAKE_CURRENT_LIST_DIR}/bench_ground.cpp)
target_link_libraries(bench_ground PRIVATE roadx_host benchmark::benchmark)
