#pragma once
// The reads of every SFF file given, found by name: a name that stands in
// several files (or twice in one) is the last one's, as the merge of
// Pelkrin-prep takes it.
#include <cstdint>
#include <memory>
#include <span>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "bam/read_qualities.h"
#include "lenient/sff_layout.h"
#include "lenient/whole_input.h"
#include "sff/read_index.h"
#include "sff/record_view.h"

namespace pelkrin::bam {

struct sff_file {
    std::string name;
    std::unique_ptr<whole_input> input;
    sff_layout layout;
};

// A read's record, in place in its file's bytes.
struct found_record {
    std::size_t file = 0;
    const sff_part* part = nullptr;
    record_view view;
    std::uint16_t clip_start = 0;  // 1-based first base of the kept range, 0 if unset

    record_bases bases() const;
    // The flowgram values, in the machine's byte order.
    void flowgram(std::vector<std::uint16_t>& out) const;
};

class sff_reads {
public:
    // Opens and walks every file; throws fatal_error (status 1) naming the
    // file and the byte where one cannot be read whole. `err` takes progress.
    sff_reads(const std::vector<std::string>& names, std::ostream& err);
    // One file's bytes, in memory (they must outlive this), as the file named `name`.
    sff_reads(const std::string& name, std::span<const std::uint8_t> bytes);

    const std::vector<sff_file>& files() const { return files_; }
    // The record of the read of that name, if any file holds it whole.
    bool find(std::string_view name, found_record& out) const;
    std::size_t reads() const { return records_.size(); }

private:
    // Indexes every read of every file by name.
    void index_names();

    struct record_ref {
        std::uint32_t file;
        std::uint32_t record;
    };
    std::vector<sff_file> files_;
    read_index names_;  // name to its record's number in records_, plus one
    std::vector<record_ref> records_;
};

}  // namespace pelkrin::bam
