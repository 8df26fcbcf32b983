# LandXML import measurements. gen_big_landxml writes a 1-million-point,
# 2-million-face TIN file (about 120 MB); bench_landxml_import times the
# import's phases on it in MB/s; landxml_vs_xmllint.sh compares
# `roadx info` with `xmllint --noout` on the same file (time and peak RSS).
add_executable(gen_big_landxml ${CMAKE_CURRENT_LIST_DIR}/gen_big_landxml.cpp)

add_executable(bench_landxml_import ${CMAKE_CURRENT_LIST_DIR}/bench_landxml_import.cpp)
target_link_libraries(bench_landxml_import PRIVATE roadx_landxml_import pugixml::pugixml)
