// libFuzzer target of the whole LandXML import (loading, scan, units, plan
// geometry, profiles, cross sections, surfaces, points and surveys).
// Run: landxml_fuzz -dict=fuzz/landxml.dict -max_len=65536 fuzz/corpus/landxml
#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "fuzz/landxml_fuzz_one.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    LandXmlFuzzOne(data, size, std::filesystem::temp_directory_path().string());
    return 0;
}
