#pragma once
// Merging SFF files into one big-endian SFF file without an index block,
// which Pelkrin reads as it stands.
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "lenient/sff_layout.h"

namespace pelkrin {
class output_file;
class text_buffer;
}

namespace pelkrin::prep {

// One input: its name, its bytes and what the walk found in them.
struct sff_input {
    std::string name;
    std::span<const std::uint8_t> bytes;
    sff_layout layout;
    int descriptor = -1;  // the file the bytes are, when they are a file's as it stands
};

// What the merge will write, settled before a byte is written.
struct merge_plan {
    std::uint16_t flows = 0;
    std::string flow_chars;
    std::string key;
    unsigned char version[4] = {0, 0, 0, 1};
    // For each input, for each of its records: whether it is written (a read
    // whose name comes again later is not).
    std::vector<std::vector<bool>> kept;
    std::uint64_t reads = 0;
    std::uint64_t duplicates = 0;  // records left out for a later one of their name
    std::uint64_t bytes = 0;       // the size of the file to write
    // Notes for standard error: padded flowgrams, duplicate names, stray data.
    std::vector<std::string> notes;
};

// Checks that the inputs can be merged and settles the plan; throws
// fatal_error (status 1) naming the file(s) when they cannot: a file cut off
// or damaged, flow characters or keys that differ.
merge_plan plan_merge(const std::vector<sff_input>& inputs);

// The part of the plan that says whether the inputs can be merged, from the
// files' headers alone: flows, flow characters, key and version, and the
// notes on them; throws as plan_merge does. The records are not looked at
// (`kept` stays empty, no duplicate names are sought), so that a check need
// not sort every read of every file by name.
merge_plan plan_merge_header(const std::vector<sff_input>& inputs);

// Writes the merged file to `out`. When `direct` is given (it must be `out`
// itself), runs of records that need no change go from the input's bytes
// straight to the file. `done` is called with the input bytes handled so far.
void write_merge(const std::vector<sff_input>& inputs, const merge_plan& plan, text_buffer& out,
                 output_file* direct = nullptr, void (*done)(void*, std::uint64_t) = nullptr,
                 void* context = nullptr);

}  // namespace pelkrin::prep
