// Where tests find their files: every path a test opens is built here, so
// no test names a place outside the repository. The build passes the
// repository's tests/data folder as ROADX_TEST_DATA and the repository root
// as ROADX_SOURCE_DIR (for the checking scripts and the fuzz corpora, which
// live beside the code they serve).
//
//   roadx::test::DataPath("landxml/road.xml")     tests/data/landxml/road.xml
//   roadx::test::SourcePath("fuzz/corpus/rd3")    fuzz/corpus/rd3
#pragma once
#include <string>
#include <string_view>

namespace roadx::test {

// A file or folder under tests/data; "" gives the folder itself.
inline std::string DataPath(std::string_view relative = {}) {
    std::string path = ROADX_TEST_DATA;
    if (!relative.empty()) path.append("/").append(relative);
    return path;
}

// A file or folder of the repository, for what is not test data.
inline std::string SourcePath(std::string_view relative = {}) {
    std::string path = ROADX_SOURCE_DIR;
    if (!relative.empty()) path.append("/").append(relative);
    return path;
}

}  // namespace roadx::test
