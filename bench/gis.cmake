# The elevation model of a 1-million-triangle surface: cells rasterised per
# second, and the whole GeoTIFF written (DEFLATE) per second.
add_executable(bench_dem ${CMAKE_CURRENT_LIST_DIR}/bench_dem.cpp)
target_link_libraries(bench_dem PRIVATE roadx_gis benchmark::benchmark)
