// libFuzzer target of the RD3 reader (and of the writer on what it read).
#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "fuzz/rd3_fuzz_one.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Rd3FuzzOne(data, size, std::filesystem::temp_directory_path().string());
    return 0;
}
