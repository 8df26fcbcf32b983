# LandXML import fuzz target. Included from fuzz/CMakeLists.txt; built only
# with -DROADX_FUZZ=ON and clang (CC=clang CXX=clang++). Its corpus,
# fuzz/corpus/landxml, is replayed by tests/landxml_import.
# Run: landxml_fuzz -dict=fuzz/landxml.dict -max_len=65536 fuzz/corpus/landxml
if(ROADX_FUZZ)
  add_executable(landxml_fuzz ${CMAKE_CURRENT_LIST_DIR}/landxml_fuzz.cpp)
  target_link_libraries(landxml_fuzz PRIVATE roadx_landxml_import)
  target_link_options(landxml_fuzz PRIVATE -fsanitize=fuzzer)
endif()
