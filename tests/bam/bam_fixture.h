#pragma once
// Assemblies and SFF files for Pelkrin-bam's tests, and its BAM file read back.
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "ace/contig.h"
#include "program.h"

namespace pelkrin::test {

// Every contig of an ACE file in any dialect, as the lenient reading reads it.
std::vector<contig> contigs_of(const std::string& ace_text);

// An SFF file that holds every read of the assembly: its bases on the
// strand the sequencer read (complemented back where the AF line says C),
// after the key TCAG, each base called by the next flow of its letter;
// qualities and flow signals made up from the read's name and place, each
// signal raised by `signal_offset`.
std::string sff_of_reads(const std::vector<contig>& contigs, bool big_endian = true, std::uint16_t signal_offset = 0);

// One record of a BAM file, as samtools view would show its fields.
struct bam_read {
    std::string name;
    int flag = 0;
    int tid = -1;
    std::int64_t pos = -1;  // 0-based
    int mapq = 0;
    std::string cigar;      // "*" when none
    std::int64_t query_length = 0;  // of the CIGAR: M, I, S
    std::string seq;
    std::vector<std::uint8_t> quals;  // empty for QUAL *
    std::string read_group;
    std::vector<std::uint16_t> flowgram;  // FZ
    std::int64_t first_flow = -1;          // ZF
    std::int64_t nm = -1;
    std::string md;
};

std::vector<bam_read> read_bam(const std::filesystem::path& bam);
// The header's text.
std::string bam_header(const std::filesystem::path& bam);

// The depth at every unpadded position of every contig, counted from the
// ACE file's aligned parts: reads with a base (not a pad) in that column,
// within their alignment clip range.
std::map<std::string, std::vector<int>> ace_depth(const std::vector<contig>& contigs);

// A program found on PATH, or "" when there is none.
std::string tool_path(const std::string& name);

// Pelkrin-bam as built beside the tests.
std::string pelkrin_bam_binary();

}  // namespace pelkrin::test

namespace pelkrin::test {

// The entries of a reads file written by Pelkrin -f: each read's three data
// lines (qualities, flow indexes, flowgram values) by name.
std::map<std::string, std::vector<std::string>> reads_file_entries(const std::string& text);

// The kept (clipped) bases of every read of an SFF file, by name, as
// Pelkrin's reader decodes them.
std::map<std::string, std::string> clipped_bases(const std::filesystem::path& sff);

}  // namespace pelkrin::test
