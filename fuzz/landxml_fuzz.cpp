// libFuzzer target of the whole LandXML import (loading, scan, units, plan
// geometry, profiles, cross sections, surfaces, points and surveys), each
// input read twice: surfaces scanned from the buffer and through the DOM.
// Run: landxml_fuzz -dict=fuzz/landxml.dict -max_len=65536 fuzz/corpus/landxml
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "fuzz/landxml_fuzz_one.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The scanned reading of surfaces must make exactly the calls of the DOM
    // reading: a difference is a finding.
    if (!LandXmlFuzzBoth(data, size, std::filesystem::temp_directory_path().string()).pathsAgree) std::abort();
    return 0;
}
