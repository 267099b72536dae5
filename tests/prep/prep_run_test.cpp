// Pelkrin-prep as a program on real files: check says what is wrong, the
// repaired pair goes through Pelkrin, and every read's entry is the one the
// read gets from an untouched pair or from the SFF file it came from.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "files.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

std::string data(const char* leaf) { return read_file(data_file(leaf)); }

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

program_result pelkrin(const fs::path& dir, const std::string& ace, const std::string& sff) {
    return run_program({pelkrin_binary(), "-f", ace, sff}, dir);
}

// The prefix Pelkrin names its outputs by.
std::string reads_of(const fs::path& dir, const std::string& ace) {
    return read_file(dir / (ace.substr(0, ace.rfind('.')) + ".reads"));
}

// Every read of every contig has the entry `expected` gives for its name.
void expect_entries(const reads_entries& got, const std::map<std::string, std::vector<std::string>>& expected) {
    std::size_t n = 0;
    for (const auto& [contig_name, reads] : got) {
        for (const auto& [name, lines] : reads) {
            SCOPED_TRACE(contig_name + " " + name);
            const auto found = expected.find(name);
            ASSERT_NE(found, expected.end());
            EXPECT_TRUE(lines == found->second);
            ++n;
        }
    }
    EXPECT_GT(n, 0u);
}

// An SFF read of the given bases, each called by the next flow of its letter.
sff_fixture_read read_of_bases(const std::string& name, const std::string& bases) {
    sff_fixture_read r;
    r.name = name;
    r.bases = bases;
    int flow = -1;
    for (char b : bases) {
        const int before = flow;
        do ++flow;
        while (b != 'N' && "TACG"[flow % 4] != b);
        r.flow_index.push_back(static_cast<std::uint8_t>(flow - before));
        r.quals.push_back(static_cast<std::uint8_t>(20 + r.quals.size() % 20));
    }
    return r;
}

std::string reverse_complement(std::string s) {
    std::reverse(s.begin(), s.end());
    for (char& c : s) c = c == 'A' ? 'T' : c == 'T' ? 'A' : c == 'C' ? 'G' : c == 'G' ? 'C' : c;
    return s;
}

TEST(PrepRealFiles, MiraAssemblyIsRepairedForPelkrin) {
    const fs::path dir = scratch_dir();
    write_file(dir / "mira.ace", data("mira/sim454_out.ace"));
    write_file(dir / "reads.sff", data("mira/sim454.sff"));
    auto r = run_prep({"check", "mira.ace", "reads.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "dialect: MIRA\n")) << r.out;
    EXPECT_TRUE(has(r.out, "problem: line 325: an empty line between a read's QA and DS lines")) << r.out;
    EXPECT_TRUE(has(r.out, "reads of the assembly that no SFF file holds: 0\n"));
    EXPECT_TRUE(has(r.out, "Pelkrin will not read this pair correctly as it stands: repair it with Pelkrin-prep ace.\n"));
    EXPECT_EQ(pelkrin(dir, "mira.ace", "reads.sff").status, 1);

    r = run_prep({"ace", "mira.ace", "fixed.ace"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    r = run_prep({"check", "fixed.ace", "reads.sff"}, dir);
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_TRUE(has(r.out, "\nPelkrin will read this pair correctly as it stands.\n")) << r.out;
    r = pelkrin(dir, "fixed.ace", "reads.sff");
    ASSERT_EQ(r.status, 0) << r.err;
    const auto got = entries_of(reads_of(dir, "fixed.ace"));
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got.begin()->second.size(), 120u);
    expect_entries(got, sff_entries(data("mira/sim454.sff")));

    // A CR LF copy, gzipped, with lines of white space only, repairs to the same file.
    write_file(dir / "mira.ace.gz", gzipped(with_crlf(with_white_lines(data("mira/sim454_out.ace")))));
    r = run_prep({"check", "mira.ace.gz", "reads.sff"}, dir);
    EXPECT_TRUE(has(r.out, "dialect: MIRA, CR LF line ends, lines of white space only, gzip\n")) << r.out;
    r = run_prep({"ace", "mira.ace.gz", "fixed2.ace"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(read_file(dir / "fixed2.ace") == read_file(dir / "fixed.ace"));
}

TEST(PrepRealFiles, Cap3AssemblyIsRepairedForPelkrin) {
    const fs::path dir = scratch_dir();
    const std::string text = data("seq.cap.ace");
    // An SFF file of the assembly's reads, as sequenced (complemented reads turned back).
    std::string repaired;
    const auto contigs = lenient_contigs(text, repaired);
    sff_fixture f;
    f.flows = 4400;
    for (const auto& [name, read] : contigs.at(0).reads) {
        std::string bases;
        for (char c : read.seq)
            if (c != '*') bases.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
        f.reads.push_back(read_of_bases(name, read.uncomplemented == 0 ? reverse_complement(bases) : bases));
    }
    const std::string sff = build_sff(f).bytes;
    write_file(dir / "cap.ace", text);
    write_file(dir / "cap.sff", sff);
    auto r = run_prep({"check", "cap.ace", "cap.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "dialect: CAP3\n")) << r.out;
    EXPECT_TRUE(has(r.out, "reads whose bases do not occur in their SFF record: 0\n")) << r.out;
    EXPECT_EQ(pelkrin(dir, "cap.ace", "cap.sff").status, 1);

    r = run_prep({"ace", "cap.ace", "fixed.ace"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    r = run_prep({"check", "fixed.ace", "cap.sff"}, dir);
    EXPECT_EQ(r.status, 0) << r.out;
    r = pelkrin(dir, "fixed.ace", "cap.sff");
    ASSERT_EQ(r.status, 0) << r.err;
    expect_entries(entries_of(reads_of(dir, "fixed.ace")), sff_entries(sff));
}

TEST(PrepRealFiles, CrLfAndGzipCopiesGiveTheUntouchedEntries) {
    const fs::path dir = scratch_dir();
    const std::string ace = read_file(source_file("example/example.ace"));
    const std::string sff = read_file(source_file("example/example.sff"));
    write_file(dir / "plain.ace", ace);
    write_file(dir / "plain.sff", sff);
    ASSERT_EQ(pelkrin(dir, "plain.ace", "plain.sff").status, 0);
    const auto untouched = entries_of(reads_of(dir, "plain.ace"));
    auto r = run_prep({"check", "plain.ace", "plain.sff"}, dir);
    EXPECT_EQ(r.status, 0) << r.out;

    write_file(dir / "crlf.ace", with_crlf(ace));
    write_file(dir / "gz.ace", gzipped(with_crlf(ace)));
    write_file(dir / "reads.sff.gz", gzipped(sff));
    r = run_prep({"check", "crlf.ace", "plain.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "CR LF line ends")) << r.out;
    EXPECT_TRUE(has(r.out, "problem: line 1: CR LF line ends")) << r.out;
    r = run_prep({"check", "gz.ace", "reads.sff.gz"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "problem: compressed with gzip; Pelkrin reads plain ACE files only")) << r.out;
    EXPECT_TRUE(has(r.out, "problem: compressed with gzip; Pelkrin reads plain SFF files only")) << r.out;

    for (const char* in : {"crlf.ace", "gz.ace"}) {
        SCOPED_TRACE(in);
        r = run_prep({"ace", in, "fixed.ace"}, dir);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(read_file(dir / "fixed.ace") == ace);
    }
    r = run_prep({"sff", "fixed.sff", "reads.sff.gz"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    r = pelkrin(dir, "fixed.ace", "fixed.sff");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(entries_of(reads_of(dir, "fixed.ace")) == untouched);
}

// A real SFF file written again in the given byte order, with its index block before read `index_at`.
std::string variant(const std::string& sff, bool big_endian, std::size_t index_at) {
    sff_fixture f = fixture_of(sff);
    f.big_endian = big_endian;
    f.index_block_before = index_at;
    return build_sff(f).bytes;
}

TEST(PrepRealFiles, SffFilesMergeInEitherByteOrderWithIndexBlocksAnywhere) {
    const std::vector<std::string> leaves = {"greek.sff", "paired.sff", "E3MFGYR02_random_10_reads.sff"};
    std::vector<std::vector<std::string>> names;
    std::vector<std::map<std::string, std::vector<std::string>>> original;
    for (const std::string& leaf : leaves) {
        original.push_back(sff_entries(data(leaf.c_str())));
        names.emplace_back();
        for (const auto& [name, lines] : original.back()) names.back().push_back(name);
    }
    const std::string ace = ace_of_reads(names);
    for (const bool big_endian : {true, false}) {
        SCOPED_TRACE(big_endian ? "big-endian" : "little-endian");
        const fs::path dir = scratch_subdir(big_endian ? "big" : "little");
        write_file(dir / "asm.ace", ace);
        std::vector<std::string> args = {"sff", "merged.sff"};
        for (std::size_t i = 0; i < leaves.size(); ++i) {
            const std::string bytes = data(leaves[i].c_str());
            // The index block at the start of one file, in the middle of the others.
            const std::size_t at = i == 0 ? 0 : names[i].size() / 2;
            write_file(dir / leaves[i], variant(bytes, big_endian, at));
            args.push_back(leaves[i]);
        }
        auto r = run_prep({"check", "asm.ace", leaves[0]}, dir);
        EXPECT_TRUE(has(r.out, big_endian ? "byte order: big-endian" : "byte order: little-endian")) << r.out;
        EXPECT_TRUE(has(r.out, "index block: before the reads")) << r.out;
        r = run_prep({"check", "asm.ace", leaves[1]}, dir);
        EXPECT_TRUE(has(r.out, "index block: among the reads")) << r.out;

        r = run_prep(args, dir);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(has(r.err, "E3MFGYR02_random_10_reads.sff: note: 400 flows per read where others have 800")) << r.err;
        r = run_prep({"check", "asm.ace", "merged.sff"}, dir);
        EXPECT_TRUE(has(r.out, "reads: 54 announced, 54 found\n")) << r.out;
        EXPECT_TRUE(has(r.out, "byte order: big-endian\n")) << r.out;
        EXPECT_TRUE(has(r.out, "index block: none\n")) << r.out;
        r = pelkrin(dir, "asm.ace", "merged.sff");
        ASSERT_EQ(r.status, 0) << r.err;
        const auto merged = entries_of(reads_of(dir, "asm.ace"));
        ASSERT_EQ(merged.size(), 3u);
        std::size_t i = 0;
        for (const auto& [contig_name, reads] : merged) {
            SCOPED_TRACE(contig_name);
            auto expected = original[i++];
            if (contig_name == "Contig3") {
                // The 400-flow reads' flowgrams carry 400 zero values more.
                for (auto& [name, lines] : expected)
                    for (int k = 0; k < 400; ++k) lines[2] += "\t0";
            }
            expect_entries({{contig_name, reads}}, expected);
        }
    }
}

TEST(PrepRealFiles, TwoSffFilesInOneAreBothTaken) {
    const fs::path dir = scratch_dir();
    write_file(dir / "two.sff", data("greek.sff") + data("E3MFGYR02_random_10_reads.sff"));
    std::vector<std::string> greek;
    std::vector<std::string> e3;
    for (const auto& [name, lines] : sff_entries(data("greek.sff"))) greek.push_back(name);
    for (const auto& [name, lines] : sff_entries(data("E3MFGYR02_random_10_reads.sff"))) e3.push_back(name);
    write_file(dir / "asm.ace", ace_of_reads({greek, e3}));
    auto r = run_prep({"check", "asm.ace", "two.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "problem: data after the last read: 1 more SFF file(s) appended, the first at byte 65296"))
        << r.out;
    EXPECT_TRUE(has(r.out, "reads of the assembly that no SFF file holds: 0\n")) << r.out;
    r = run_prep({"sff", "one.sff", "two.sff"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    r = pelkrin(dir, "asm.ace", "one.sff");
    ASSERT_EQ(r.status, 0) << r.err;
    const auto got = entries_of(reads_of(dir, "asm.ace"));
    expect_entries({{"Contig1", got.at("Contig1")}}, sff_entries(data("greek.sff")));
}

TEST(PrepRealFiles, DuplicateReadsAreWrittenOnceAndReported) {
    const fs::path dir = scratch_dir();
    write_file(dir / "a.sff", data("greek.sff"));
    write_file(dir / "copy.sff", data("greek.sff"));
    auto r = run_prep({"sff", "m.sff", "a.sff", "copy.sff"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(has(r.err, "occurs again: a.sff byte 840 is left out for copy.sff byte 840\n")) << r.err;
    EXPECT_TRUE(has(r.err, "24 records in all were left out")) << r.err;
    r = run_prep({"check", "x.ace", "m.sff"}, dir);
    EXPECT_TRUE(has(r.out, "reads: 24 announced, 24 found")) << r.out;
}

TEST(PrepCheck, FindsAWrongSffFileAndMissingReads) {
    const fs::path dir = scratch_dir();
    write_file(dir / "mira.ace", data("mira/sim454_out.ace"));
    write_file(dir / "greek.sff", data("greek.sff"));
    auto r = run_prep({"check", "mira.ace", "greek.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "reads of the assembly that no SFF file holds: 120 (the first ten: ")) << r.out;

    // The same names with other bases: the sign of a wrong SFF file.
    sff_fixture f = fixture_of(data("mira/sim454.sff"));
    for (auto& read : f.reads) std::rotate(read.bases.begin(), read.bases.begin() + 7, read.bases.end());
    write_file(dir / "wrong.sff", build_sff(f).bytes);
    r = run_prep({"check", "mira.ace", "wrong.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "reads whose bases do not occur in their SFF record: 120 (the first ten: ")) << r.out;
    EXPECT_TRUE(has(r.out, "the sign of a wrong SFF file")) << r.out;
}

// 65,496 flows and a 4-base key make a header of 65,536 bytes, one more than
// its 16-bit length field can say: refused rather than written as length 0.
TEST(PrepRefusals, AHeaderLongerThanItsLengthFieldIsRefused) {
    const fs::path dir = scratch_dir();
    sff_fixture f;
    f.flows = 65496;
    f.key = "TCAG";
    // No reads; the header as long as its fields (65,531 bytes, a length the
    // file may give unpadded), which the writer's own padding would overflow.
    std::string bytes = build_sff(f).bytes;
    bytes.resize(65531);
    bytes[24] = static_cast<char>(0xFF);
    bytes[25] = static_cast<char>(0xFB);
    write_file(dir / "wide.sff", bytes);
    const auto r = run_prep({"sff", "m.sff", "wide.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.err, "wide.sff: 65496 flows and a key of 4 bases need a header longer than an SFF header can say"))
        << r.err;
    EXPECT_FALSE(fs::exists(dir / "m.sff"));
}

TEST(PrepRefusals, DifferentKeysOrFlowCharactersNameBothFiles) {
    const fs::path dir = scratch_dir();
    write_file(dir / "a.sff", data("greek.sff"));
    sff_fixture f = fixture_of(data("E3MFGYR02_random_10_reads.sff"));
    f.key = "GACT";
    write_file(dir / "key.sff", build_sff(f).bytes);
    f = fixture_of(data("E3MFGYR02_random_10_reads.sff"));
    f.flow_chars = std::string(400, 'A');
    write_file(dir / "flows.sff", build_sff(f).bytes);
    auto r = run_prep({"sff", "m.sff", "a.sff", "key.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.err, "key.sff and a.sff have different keys")) << r.err;
    r = run_prep({"sff", "m.sff", "flows.sff", "a.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.err, "flows.sff and a.sff have different flow characters")) << r.err;
    r = run_prep({"check", "x.ace", "a.sff", "key.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "problem: they cannot be merged: key.sff and a.sff have different keys")) << r.out;
    // Nothing written, not even a temporary file.
    EXPECT_FALSE(fs::exists(dir / "m.sff"));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& e : fs::directory_iterator(dir)) ++files;
    EXPECT_EQ(files, 3u);
}

TEST(PrepRefusals, OutputOverAnInput) {
    const fs::path dir = scratch_dir();
    write_file(dir / "a.sff", data("greek.sff"));
    write_file(dir / "a.ace", data("seq.cap.ace"));
    fs::create_symlink("a.sff", dir / "link.sff");
    auto r = run_prep({"sff", "link.sff", "a.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.err, "would overwrite input file a.sff")) << r.err;
    r = run_prep({"ace", "a.ace", "a.ace"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(read_file(dir / "a.ace") == data("seq.cap.ace"));
}

TEST(PrepRefusals, CutOffAceFileNamesTheContig) {
    const fs::path dir = scratch_dir();
    const std::string text = data("contig1.ace");
    write_file(dir / "cut.ace", text.substr(0, text.find("\nCO Contig2") + 2000));
    auto r = run_prep({"ace", "cut.ace", "out.ace"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.err, "cut.ace: line ")) << r.err;
    EXPECT_TRUE(has(r.err, "cut off inside contig Contig2")) << r.err;
    EXPECT_FALSE(fs::exists(dir / "out.ace"));
    r = run_prep({"check", "cut.ace", "x.sff"}, dir);
    EXPECT_TRUE(has(r.out, "cut off inside a contig")) << r.out;
    r = run_prep({"ace", "--keep-complete", "cut.ace", "out.ace"}, dir);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(read_file(dir / "out.ace").substr(0, 7), "AS 1 2\n");
    EXPECT_EQ(run_program({pelkrin_binary(), "out.ace", "x.sff"}, dir).status, 1);  // no SFF file, but the ACE is read
}

// A folder or a device as an input: a message naming it and the system's
// reason, status 1, and no output; never an abort or a read without end.
TEST(PrepRefusals, AFolderOrADeviceAsAnInputIsNamed) {
    const fs::path dir = scratch_dir();
    write_file(dir / "a.ace", data("seq.cap.ace"));
    write_file(dir / "a.sff", data("greek.sff"));
    fs::create_directory(dir / "folder");
    struct call {
        std::vector<std::string> args;
        std::string message;
    };
    const std::vector<call> calls = {
        {{"ace", "folder", "o.ace"}, "Pelkrin-prep: folder: cannot read: Is a directory\n"},
        {{"ace", "/dev/zero", "o.ace"}, "Pelkrin-prep: /dev/zero: is a device, not a file\n"},
        {{"sff", "o.sff", "a.sff", "folder/"}, "Pelkrin-prep: folder/: cannot read: Is a directory\n"},
        {{"sff", "o.sff", "/dev/zero"}, "Pelkrin-prep: /dev/zero: is a device, not a file\n"},
        {{"sff", "o.sff", "none.sff"}, "Pelkrin-prep: none.sff: cannot open: No such file or directory\n"},
    };
    for (const call& c : calls) {
        const auto r = run_prep(c.args, dir);
        EXPECT_EQ(r.status, 1) << c.args[1];
        EXPECT_EQ(r.err, c.message);
        EXPECT_FALSE(fs::exists(dir / "o.ace") || fs::exists(dir / "o.sff"));
    }
    // check reports on every file it is given, and goes on past one it cannot read.
    auto r = run_prep({"check", "a.ace", "folder"}, dir);
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_TRUE(has(r.out, "SFF file folder\n  problem: folder: cannot read: Is a directory\n")) << r.out;
    r = run_prep({"check", "/dev/zero", "a.sff"}, dir);
    EXPECT_TRUE(has(r.out, "ACE file /dev/zero\n  problem: /dev/zero: is a device, not a file\n")) << r.out;
    EXPECT_TRUE(has(r.out, "SFF file a.sff\n")) << r.out;
}

TEST(PrepUsage, BadCommandLinesEndWithStatus2) {
    const fs::path dir = scratch_dir();
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {}, {"frobnicate"}, {"check", "a.ace"}, {"ace", "a.ace"}, {"sff", "out.sff"}}) {
        auto r = run_prep(args, dir);
        EXPECT_EQ(r.status, 2);
        EXPECT_TRUE(has(r.err, "usage: Pelkrin-prep check")) << r.err;
    }
    auto r = run_prep({"--help"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(has(r.out, "usage: Pelkrin-prep")) << r.out;
}

TEST(PrepUsage, VersionPrintsTheProjectsVersion) {
    const auto r = run_prep({"--version"}, scratch_dir());
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Pelkrin-prep (Pelkrin) " PELKRIN_VERSION "\n");
    EXPECT_EQ(r.err, "");
}

}  // namespace
}  // namespace pelkrin::test
