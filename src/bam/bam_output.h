#pragma once
// The BAM file written through htslib, BGZF compression on threads of its
// own, and its index, built as the records are written (reading the file
// again to index it would take as long as writing it).
#include <htslib/sam.h>

#include <cstdint>
#include <string>

namespace pelkrin::bam {

class bam_output {
public:
    // Opens `path` and writes the header of `header_text`; the index goes to
    // `index_path`, BAI or, when `csi` (a reference too long for BAI), CSI.
    // `shown_name` is the name messages give. Throws fatal_error (status 1)
    // when it cannot.
    bam_output(const std::string& path, const std::string& index_path, const std::string& shown_name,
               const std::string& header_text, bool csi, int threads);
    ~bam_output();
    bam_output(const bam_output&) = delete;
    bam_output& operator=(const bam_output&) = delete;

    const sam_hdr_t* header() const { return header_; }
    void write(const bam1_t* record);
    // Flushes the file, writes the index and closes the file; throws
    // fatal_error when a write failed.
    void close();

private:
    [[noreturn]] void cannot_write();

    std::string shown_name_;
    std::string index_path_;  // htslib keeps a pointer to it until the index is saved
    htsFile* file_ = nullptr;
    sam_hdr_t* header_ = nullptr;
};

// The longest reference BAI can index (2^29 - 1 bases).
inline constexpr std::int64_t longest_for_bai = (std::int64_t{1} << 29) - 1;

}  // namespace pelkrin::bam
