#pragma once
// Inputs in every dialect Pelkrin-prep repairs, made from the real files of
// tests/data, and the two readings the repairs are judged by.
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "ace/contig.h"
#include "gzip_fixture.h"
#include "program.h"
#include "sff_writer.h"

namespace pelkrin::test {

// The text with every line feed preceded by a carriage return.
std::string with_crlf(const std::string& text);
// The text with every empty line replaced by one of white space only.
std::string with_white_lines(const std::string& text);

// What the lenient reading of Pelkrin-prep finds in `text`, and in `repaired`
// the ACE file it writes.
std::vector<contig> lenient_contigs(const std::string& text, std::string& repaired, bool keep_complete = false);
// What Pelkrin's reader finds in `text`.
std::vector<contig> strict_contigs(const std::string& text);

// Every record of an SFF file as the sff_writer would write it again.
sff_fixture fixture_of(const std::string& sff_bytes);

// Pelkrin-prep run in `dir` with the arguments.
program_result run_prep(const std::vector<std::string>& args, const std::filesystem::path& dir);
// The same, stopped after 10 seconds and, in the optimised build, under a
// 1 GB address-space limit (the sanitizer build keeps its own allocation
// limits): for inputs that must be refused rather than read without end.
program_result run_prep_bounded(const std::vector<std::string>& args, const std::filesystem::path& dir);

// A reads file's entries: contig name, then read name, to the entry's lines.
using reads_entries = std::map<std::string, std::map<std::string, std::vector<std::string>>>;
reads_entries entries_of(const std::string& reads_file);

// The entry Pelkrin writes with -f for the read of that name in the SFF
// file, decoded by the library's reader: quality, flow index and flowgram lines.
std::map<std::string, std::vector<std::string>> sff_entries(const std::string& sff_bytes);

// An ACE file in Pelkrin's layout with one contig per list, whose reads are those named.
std::string ace_of_reads(const std::vector<std::vector<std::string>>& contigs);

}  // namespace pelkrin::test
