#pragma once
// The BAM file written through htslib, BGZF compression on threads of its
// own, and its index.
#include <htslib/sam.h>

#include <string>

namespace pelkrin::bam {

class bam_output {
public:
    // Opens `path` and writes the header of `header_text`; `shown_name` is
    // the name messages give. Throws fatal_error (status 1) when it cannot.
    bam_output(const std::string& path, const std::string& shown_name, const std::string& header_text, int threads);
    ~bam_output();
    bam_output(const bam_output&) = delete;
    bam_output& operator=(const bam_output&) = delete;

    const sam_hdr_t* header() const { return header_; }
    void write(const bam1_t* record);
    // Flushes and closes the file; throws fatal_error when a write failed.
    void close();

private:
    [[noreturn]] void cannot_write();

    std::string shown_name_;
    htsFile* file_ = nullptr;
    sam_hdr_t* header_ = nullptr;
};

// Indexes the BAM file at `path` into `index_path`: BAI, or CSI when
// `csi` (a reference too long for BAI). Throws fatal_error naming
// `shown_name` when it cannot.
void index_bam(const std::string& path, const std::string& index_path, const std::string& shown_name, bool csi,
               int threads);

// The longest reference BAI can index (2^29 - 1 bases).
inline constexpr std::int64_t longest_for_bai = (std::int64_t{1} << 29) - 1;

}  // namespace pelkrin::bam
