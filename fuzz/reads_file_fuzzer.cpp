// libFuzzer entry of the readers of Pelkrin's .qdx and .reads files.
#include <cstddef>
#include <cstdint>

#include "targets/fuzz_targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pelkrin::fuzz::reads_file(data, size);
    return 0;
}
