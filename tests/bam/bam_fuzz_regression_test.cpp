// Replays Pelkrin-bam's fuzz target on its regression inputs
// (fuzz/regressions/bam_records) and on the real assemblies.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "files.h"
#include "targets/bam_target.h"

namespace pelkrin::test {
namespace {

void call(const std::string& bytes) {
    fuzz::bam_records(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

std::string packed(const std::string& ace, const std::string& sff) {
    const auto n = static_cast<std::uint32_t>(ace.size());
    std::string bytes(4, '\0');
    for (int i = 0; i < 4; ++i) bytes[static_cast<std::size_t>(i)] = static_cast<char>((n >> (8 * i)) & 0xFF);
    return bytes + ace + sff;
}

TEST(FuzzRegressions, BamRecords) {
    call("");
    call(packed(read_file(source_file("example/example.ace")), read_file(source_file("example/example.sff"))));
    call(packed(read_file(data_file("mira/sim454_out.ace")), read_file(data_file("mira/sim454.sff"))));
    const auto dir = source_file("fuzz/regressions/bam_records");
    std::size_t n = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        if (!entry.is_regular_file() || entry.path().filename().string().front() == '.') continue;
        SCOPED_TRACE(entry.path().string());
        call(read_file(entry.path()));
        ++n;
    }
    EXPECT_GT(n, 0u) << dir << " holds no regression input";
}

}  // namespace
}  // namespace pelkrin::test
