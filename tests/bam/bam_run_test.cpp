// Pelkrin-bam on real assemblies: the BAM file passes samtools and Picard,
// calmd finds nothing to change, the depth is the ACE file's, and each
// read's qualities and flow signals are those Pelkrin writes for it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>
#include <string>

#include "bam_fixture.h"
#include "files.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

struct assembly_case {
    std::string name;
    std::string ace;       // the file's text
    std::string sff;       // the SFF file's bytes
    bool strict = false;   // Pelkrin reads the ACE file as it stands
};

std::vector<assembly_case> assemblies() {
    std::vector<assembly_case> cases;
    cases.push_back({"example", read_file(source_file("example/example.ace")), read_file(source_file("example/example.sff")), true});
    cases.push_back({"mira", read_file(data_file("mira/sim454_out.ace")), read_file(data_file("mira/sim454.sff")), false});
    for (const auto& [name, file, strict] : std::vector<std::tuple<std::string, std::string, bool>>{
             {"cap3", "seq.cap.ace", false}, {"phrap", "contig1.ace", true}, {"consed", "consed_sample.ace", true}}) {
        const std::string text = read_file(data_file(file));
        cases.push_back({name, text, sff_of_reads(contigs_of(text)), strict});
    }
    return cases;
}

// The assembly's files in a fresh folder, and Pelkrin-bam run on them.
struct written {
    fs::path dir;
    program_result run;
};

written write_bam(const assembly_case& a) {
    written w{scratch_subdir(a.name), {}};
    write_file(w.dir / "asm.ace", a.ace);
    write_file(w.dir / "reads.sff", a.sff);
    w.run = run_program({pelkrin_bam_binary(), "--threads", "2", "asm.ace", "reads.sff"}, w.dir);
    return w;
}

std::string required_tool(const std::string& name) {
    const std::string path = tool_path(name);
    EXPECT_FALSE(path.empty()) << name << " is not installed (scripts/install-deps.sh --tests installs it)";
    return path;
}

TEST(BamRealAssemblies, EachPassesSamtoolsAndPicard) {
    const std::string samtools = required_tool("samtools");
    const std::string picard = required_tool("picard-tools");
    ASSERT_FALSE(samtools.empty() || picard.empty());
    for (const assembly_case& a : assemblies()) {
        SCOPED_TRACE(a.name);
        const written w = write_bam(a);
        ASSERT_EQ(w.run.status, 0) << w.run.err;
        for (const char* leaf : {"asm.bam", "asm.bam.bai", "asm.fa", "asm.fa.fai"}) EXPECT_TRUE(fs::exists(w.dir / leaf)) << leaf;
        EXPECT_EQ(run_program({samtools, "quickcheck", "asm.bam"}, w.dir).status, 0);

        // Every CIGAR spans its SEQ.
        const std::vector<bam_read> reads = read_bam(w.dir / "asm.bam");
        ASSERT_FALSE(reads.empty());
        for (const bam_read& r : reads) {
            if ((r.flag & 4) == 0) {
                EXPECT_EQ(r.query_length, static_cast<std::int64_t>(r.seq.size())) << r.name << " " << r.cigar;
            }
        }

        // calmd changes no record.
        const program_result view = run_program({samtools, "view", "asm.bam"}, w.dir);
        ASSERT_EQ(run_program({samtools, "calmd", "-b", "asm.bam", "asm.fa"}, w.dir, {0, 0, 0, (w.dir / "calmd.bam").string()}).status, 0);
        const program_result recomputed = run_program({samtools, "view", "calmd.bam"}, w.dir);
        EXPECT_TRUE(view.out == recomputed.out) << "calmd changed a record";

        // The depth at every position is the ACE file's.
        const auto expected = ace_depth(contigs_of(a.ace));
        const program_result depth = run_program({samtools, "depth", "-a", "asm.bam"}, w.dir);
        ASSERT_EQ(depth.status, 0) << depth.err;
        std::map<std::string, std::vector<int>> found;
        std::istringstream lines(depth.out);
        std::string contig_name;
        std::int64_t position = 0;
        int count = 0;
        while (lines >> contig_name >> position >> count) found[contig_name].push_back(count);
        for (const auto& [name, d] : expected) {
            if (d.empty()) continue;
            EXPECT_TRUE(found[name] == d) << "depth of " << name;
        }

        const program_result valid = run_program(
            {picard, "ValidateSamFile", "-I", "asm.bam", "-R", "asm.fa", "-MODE", "SUMMARY"}, w.dir);
        EXPECT_EQ(valid.status, 0) << valid.out << valid.err;
        EXPECT_NE(valid.out.find("No errors found"), std::string::npos) << valid.out;
    }
}

std::string joined(const std::vector<std::uint8_t>& values) {
    std::string text;
    for (std::uint8_t v : values) text.append(text.empty() ? "" : "\t").append(std::to_string(v));
    return text;
}

std::string joined(const std::vector<std::uint16_t>& values) {
    std::string text;
    for (std::uint16_t v : values) text.append(text.empty() ? "" : "\t").append(std::to_string(v));
    return text;
}

std::string upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::string reverse_complement(const std::string& s) {
    std::string out(s.rbegin(), s.rend());
    for (char& c : out) c = c == 'A' ? 'T' : c == 'C' ? 'G' : c == 'G' ? 'C' : c == 'T' ? 'A' : c;
    return out;
}

// Where the ACE read's bases are the record's kept bases, QUAL is the
// quality line of Pelkrin -f's reads file, FZ its flowgram line and ZF the
// first flow of its flow index line.
TEST(BamRealAssemblies, QualitiesAndFlowSignalsAreThoseOfPelkrinsReadsFile) {
    for (const assembly_case& a : assemblies()) {
        SCOPED_TRACE(a.name);
        const written w = write_bam(a);
        ASSERT_EQ(w.run.status, 0) << w.run.err;
        std::string ace = "asm.ace";
        if (!a.strict) {
            ASSERT_EQ(run_program({pelkrin_prep_binary(), "ace", "asm.ace", "strict.ace"}, w.dir).status, 0);
            ace = "strict.ace";
        }
        const program_result pelkrin = run_program({pelkrin_binary(), "-f", ace, "reads.sff"}, w.dir);
        ASSERT_EQ(pelkrin.status, 0) << pelkrin.err;
        const auto entries = reads_file_entries(read_file(w.dir / (a.strict ? "asm.reads" : "strict.reads")));
        const auto kept = clipped_bases(w.dir / "reads.sff");
        std::size_t compared = 0;
        for (const bam_read& r : read_bam(w.dir / "asm.bam")) {
            const auto entry = entries.find(r.name);
            const auto bases = kept.find(r.name);
            if (entry == entries.end() || bases == kept.end() || entry->second.size() != 3) continue;
            const std::string on_record = (r.flag & 16) != 0 ? reverse_complement(upper(r.seq)) : upper(r.seq);
            if (on_record != upper(bases->second)) continue;
            std::vector<std::uint8_t> quals = r.quals;
            if ((r.flag & 16) != 0) std::reverse(quals.begin(), quals.end());
            EXPECT_EQ(joined(quals), entry->second[0]) << r.name;
            EXPECT_EQ(joined(r.flowgram), entry->second[2]) << r.name;
            EXPECT_EQ(std::to_string(r.first_flow), entry->second[1].substr(0, entry->second[1].find('\t'))) << r.name;
            EXPECT_EQ(r.read_group, "reads");
            ++compared;
        }
        EXPECT_GT(compared, 0u);
    }
}

}  // namespace
}  // namespace pelkrin::test
