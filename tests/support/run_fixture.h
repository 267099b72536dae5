#pragma once
// Assemblies and SFF files for end-to-end runs of the program.
#include <filesystem>
#include <string>
#include <vector>

#include "program.h"
#include "sff_writer.h"

namespace pelkrin::test {

// One contig in ACE text: CO, BQ, AF, BS and RD records for the given reads, in
// that order. A contig without reads still carries an AF line, which the reader
// passes over, and a bare RD line, at which it stops.
std::string ace_contig(const std::string& name, const std::vector<std::string>& reads);
// An ACE file of the given contig blocks.
std::string ace_file(const std::vector<std::string>& contigs);

// The reads of the worked example: readA (TCTTC at flows 0, 2, 4, 4, 6 with the
// flowgram 101 2 98 4 197 0 103 5), readB and readC, in an SFF file of 8 flows.
sff_fixture worked_example_sff();

struct run_files {
    std::filesystem::path dir;
    std::string ace;  // paths as given to the program, relative to dir
    std::string sff;
};

// Writes both inputs into a fresh scratch folder: the test's own, or one of
// that name inside it, which leaves the test's other folders alone.
run_files write_inputs(const std::string& ace_text, const std::string& sff_bytes, std::string_view folder = {});

// Runs the program in `files.dir` with the options, then the two file names.
program_result run_pelkrin(const run_files& files, const std::vector<std::string>& options = {},
                           const run_limits& limits = {});

}  // namespace pelkrin::test
