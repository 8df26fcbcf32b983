# RD3 reader fuzz target and its seed generator. Included from
# fuzz/CMakeLists.txt; built only with -DROADX_FUZZ=ON and clang
# (CC=clang CXX=clang++). Run: rd3_fuzz fuzz/corpus/rd3
if(ROADX_FUZZ)
  add_executable(rd3_fuzz ${CMAKE_CURRENT_LIST_DIR}/rd3_fuzz.cpp)
  target_link_libraries(rd3_fuzz PRIVATE roadx_rd3)
  target_link_options(rd3_fuzz PRIVATE -fsanitize=fuzzer)

  # Writes the seed files: rd3_make_corpus <dir>
  add_executable(rd3_make_corpus ${CMAKE_CURRENT_LIST_DIR}/rd3_make_corpus.cpp)
  target_link_libraries(rd3_make_corpus PRIVATE roadx_rd3)
endif()
