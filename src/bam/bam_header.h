#pragma once
// The BAM file's header: the contigs as reference sequences, one read group
// per SFF file, and the program line.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin::bam {

struct reference_sequence {
    std::string name;
    std::int64_t length = 0;  // unpadded
    std::string md5;          // of the bases in capitals, as hex
};

struct read_group {
    std::string id;
    std::string flow_chars;  // FO
    std::string key;         // KS
};

// The MD5 of the bases in capitals, as 32 hex digits: the @SQ M5 field.
std::string sequence_md5(std::string_view bases);

// A read group ID for each SFF file: its name without folder and without
// .gz and .sff, made unique with ".2", ".3", ... where names meet.
std::vector<std::string> read_group_ids(const std::vector<std::string>& sff_files);

// The header's text: @HD (coordinate order), @SQ, @RG (PL:LS454, FO, KS,
// SM), @PG with the version and the command line.
std::string header_text(const std::vector<reference_sequence>& references, const std::vector<read_group>& groups,
                        std::string_view sample, std::string_view command_line);

}  // namespace pelkrin::bam
