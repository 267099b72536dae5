#pragma once
// One contig's block of the reads file that Pelkrin writes (PREFIX.reads):
// per read a header line (the name, a tab, 1) and `lines_per_read` lines of
// tab-separated numbers: the quality scores, then with -f the flow index of
// every base and the flowgram values (signal x 100).
#include <cstdint>
#include <string_view>
#include <vector>

namespace pelkrin {

struct read_entry {
    std::string_view name;
    std::vector<std::string_view> lines;  // the data lines, without their line ends
};

// The entries of the block that begins at the start of `text`: at most
// `read_count` of them, each with exactly `lines_per_read` data lines. It
// stops at the end of the text, at the next contig's header line (">"), and
// at an entry whose lines are cut short. The views point into `text`.
std::vector<read_entry> parse_read_block(std::string_view text, uint64_t read_count, int32_t lines_per_read);

}  // namespace pelkrin
