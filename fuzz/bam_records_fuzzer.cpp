#include <cstddef>
#include <cstdint>

#include "targets/bam_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pelkrin::fuzz::bam_records(data, size);
    return 0;
}
