#include "run_fixture.h"

#include "files.h"

namespace pelkrin::test {

std::string ace_contig(const std::string& name, const std::vector<std::string>& reads) {
    std::string s = "CO " + name + " 10 " + std::to_string(reads.size()) + " 1 U\nACGTACGTAC\n\nBQ\n20 20 20\n\n";
    if (reads.empty()) return s + "AF none U 1\nBS 1 10 none\n\nRD\n\n";
    for (const auto& r : reads) s += "AF " + r + " U 1\n";
    s += "BS 1 10 " + reads.front() + "\n\n";
    for (const auto& r : reads) s += "RD " + r + " 3 0 0\nACG\n\nQA 1 3 1 3\nDS CHROMAT_FILE: " + r + "\n\n";
    return s;
}

std::string ace_file(const std::vector<std::string>& contigs) {
    std::string s = "AS " + std::to_string(contigs.size()) + " 0\n\n";
    for (const auto& c : contigs) s += c;
    return s;
}

sff_fixture worked_example_sff() {
    sff_fixture f;
    f.flows = 8;
    f.reads.push_back(read_from_flows("readC", {2, 5}, {32, 31}, 8));
    f.reads.push_back(read_from_flows("readA", {0, 2, 4, 4, 6}, {35, 35, 33, 33, 30}, 8));
    f.reads.back().flowgram = {101, 2, 98, 4, 197, 0, 103, 5};
    f.reads.push_back(read_from_flows("readB", {1, 3, 3}, {40, 38, 38}, 8));
    return f;
}

run_files write_inputs(const std::string& ace_text, const std::string& sff_bytes, std::string_view folder) {
    run_files files{folder.empty() ? scratch_dir() : scratch_subdir(folder), "asm.ace", "reads.sff"};
    write_file(files.dir / files.ace, ace_text);
    write_file(files.dir / files.sff, sff_bytes);
    return files;
}

program_result run_pelkrin(const run_files& files, const std::vector<std::string>& options, const run_limits& limits) {
    std::vector<std::string> argv{pelkrin_binary()};
    argv.insert(argv.end(), options.begin(), options.end());
    argv.push_back(files.ace);
    argv.push_back(files.sff);
    return run_program(argv, files.dir, limits);
}

}  // namespace pelkrin::test
