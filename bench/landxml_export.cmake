# LandXML export of a 1-million-point, 2-million-face surface: output rate
# and memory growth while writing.
add_executable(bench_landxml_export ${CMAKE_CURRENT_LIST_DIR}/bench_landxml_export.cpp)
target_link_libraries(bench_landxml_export PRIVATE roadx_landxml_export benchmark::benchmark)
