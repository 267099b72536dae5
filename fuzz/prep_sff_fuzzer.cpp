#include <cstddef>
#include <cstdint>

#include "targets/fuzz_targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pelkrin::fuzz::prep_sff(data, size);
    return 0;
}
