// libFuzzer target of the RD3 reader (and of the writer on what it read).
#include <cstddef>
#include <cstdint>

#include "fuzz/rd3_fuzz_one.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Rd3FuzzOne(data, size, "/tmp");
    return 0;
}
