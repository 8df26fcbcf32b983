# Drawing export of a document with a 1,000,000-triangle surface: display
# objects, contours and the DXF writer together.
add_executable(bench_dxf_export ${CMAKE_CURRENT_LIST_DIR}/bench_dxf_export.cpp)
target_link_libraries(bench_dxf_export PRIVATE roadx_exchange benchmark::benchmark)
