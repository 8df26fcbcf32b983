// Where tests find their files: every path a test opens is built here, so
// no test names a place outside the repository. The build generates, for
// each test program, one small source that defines the three roots below
// (the repository's tests/data folder, the repository root, and the roadx
// program where the tests run it). Keeping those absolute paths out of every
// other compile line lets clones of the repository share a compiler cache.
//
//   roadx::test::DataPath("landxml/road.xml")     tests/data/landxml/road.xml
//   roadx::test::SourcePath("fuzz/corpus/rd3")    fuzz/corpus/rd3
//   roadx::test::RoadxExe()                        the built roadx program
#pragma once
#include <string>
#include <string_view>

namespace roadx::test {

// The roots, defined in the generated source of each test program.
extern const char* const kDataRoot;
extern const char* const kSourceRoot;
extern const char* const kRoadxExe;  // "" where the program does not run roadx

// A file or folder under tests/data; "" gives the folder itself.
inline std::string DataPath(std::string_view relative = {}) {
    std::string path = kDataRoot;
    if (!relative.empty()) path.append("/").append(relative);
    return path;
}

// A file or folder of the repository, for what is not test data.
inline std::string SourcePath(std::string_view relative = {}) {
    std::string path = kSourceRoot;
    if (!relative.empty()) path.append("/").append(relative);
    return path;
}

// The roadx program, for the tests that run it end to end.
inline std::string RoadxExe() { return kRoadxExe; }

}  // namespace roadx::test
