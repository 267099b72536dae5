// Reads of real SFF files, checked against an independent extraction by the
// sequencer vendor's own tool.
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <sstream>

#include "capture.h"
#include "files.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

// The records of a FASTA or QUAL file by name (the first word of the header
// line), each the text of its lines joined by `joint`.
std::map<std::string, std::string> read_records(const std::string& leaf, const std::string& joint) {
    std::istringstream in(test::read_file(test::data_file(leaf)));
    std::map<std::string, std::string> result;
    std::string line, name;
    while (std::getline(in, line)) {
        if (line.empty()) continue;
        if (line[0] == '>') {
            name = line.substr(1, line.find(' ') - 1);
            result[name];
        } else {
            result[name] += line + joint;
        }
    }
    return result;
}

std::map<std::string, std::string> read_fasta(const std::string& leaf) { return read_records(leaf, ""); }

std::map<std::string, std::vector<std::int16_t>> read_qual(const std::string& leaf) {
    std::map<std::string, std::vector<std::int16_t>> result;
    for (const auto& [name, text] : read_records(leaf, " ")) {
        std::istringstream values(text);
        auto& scores = result[name];
        for (int v; values >> v;) scores.push_back(static_cast<std::int16_t>(v));
    }
    return result;
}

std::string upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

TEST(RealSff, ClippedReadsEqualTheVendorExtraction) {
    const auto fasta = read_fasta("E3MFGYR02_random_10_reads.fasta");
    const auto qual = read_qual("E3MFGYR02_random_10_reads.qual");
    ASSERT_EQ(fasta.size(), 10u);
    reader r(test::data_file("E3MFGYR02_random_10_reads.sff").string(), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(index.size(), 10u);
    for (const auto& [name, bases] : fasta) {
        ASSERT_EQ(index.count(name), 1u) << name;
        seqRead s;
        r.get_read(index.at(name), s);
        EXPECT_EQ(s.name, name);
        EXPECT_EQ(std::string(s.bases.begin(), s.bases.end()), bases) << name;
        EXPECT_EQ(s.quals, qual.at(name)) << name;
        // Every kept base but an uncalled 'N' comes from a flow of its own letter.
        for (std::size_t j = 0; j < s.bases.size(); ++j) {
            if (s.bases[j] == 'N') continue;
            ASSERT_LT(static_cast<std::size_t>(s.flowIdx[j]), r.header_p2.flow_chars.size());
            EXPECT_EQ(r.header_p2.flow_chars[static_cast<std::size_t>(s.flowIdx[j])], s.bases[j]);
        }
    }
}

TEST(RealSff, UnclippedReadsEqualTheVendorExtraction) {
    const auto fasta = read_fasta("E3MFGYR02_random_10_reads_no_trim.fasta");
    const auto qual = read_qual("E3MFGYR02_random_10_reads_no_trim.qual");
    reader r(test::data_file("E3MFGYR02_random_10_reads.sff").string(), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    for (const auto& [name, bases] : fasta) {
        seqRead clipped;
        r.get_read(index.at(name), clipped);
        sff_read whole(r.cur_read);
        whole.clip_qual_left = whole.clip_qual_right = whole.clip_adapter_left = whole.clip_adapter_right = 0;
        const seqRead s(whole);
        // The vendor tool writes the clipped-off ends in lower case.
        EXPECT_EQ(std::string(s.bases.begin(), s.bases.end()), upper(bases)) << name;
        EXPECT_EQ(s.quals, qual.at(name)) << name;
        EXPECT_EQ(s.flowIdx.front(), 0) << "the key's first base comes from the first flow";
    }
}

// Every record found by the index walk decodes by position to the same read as
// the sequential walk gives.
void expect_every_read_found(const std::string& leaf, const std::vector<std::string>& some_names,
                             std::size_t count) {
    const std::string path = test::data_file(leaf).string();
    reader r(path, test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(index.size(), count);
    ASSERT_EQ(r.header_p1.number_of_reads, count);
    for (const auto& name : some_names) EXPECT_EQ(index.count(name), 1u) << name;

    reader walker(path, test::std_console());
    walker.get_header();
    read_index walked;
    std::size_t n = 0;
    while (walker.get_next_read(walked) == 1) {
        ++n;
        const seqRead expected(walker.cur_read);
        seqRead s;
        r.get_read(index.at(expected.name), s);
        EXPECT_EQ(s.name, expected.name);
        EXPECT_EQ(s.bases, expected.bases);
        EXPECT_EQ(s.quals, expected.quals);
        EXPECT_EQ(s.flowIdx, expected.flowIdx);
        EXPECT_FALSE(s.bases.empty()) << s.name;
    }
    EXPECT_EQ(n, count);
    EXPECT_EQ(walked, index);
}

TEST(RealSff, EveryReadOfTheTenReadFileIsFound) {
    expect_every_read_found("E3MFGYR02_random_10_reads.sff", {"E3MFGYR02JWQ7T"}, 10);
}

TEST(RealSff, EveryReadOfGreekIsFound) {
    expect_every_read_found("greek.sff",
                            {"alpha", "beta", "gamma", "delta", "epsilon", "zeta", "eta", "theta", "iota", "kappa",
                             "lambda", "mu", "nu", "xi", "omicron", "pi", "rho", "sigma", "tau", "upsilon", "phi",
                             "chi", "psi", "omega"},
                            24);
}

TEST(RealSff, EveryReadOfPairedIsFound) {
    std::vector<std::string> names;
    for (int i = 1; i <= 20; ++i) {
        std::string n = std::to_string(i);
        names.push_back("paired_read_" + std::string(7 - n.size(), '0') + n);
    }
    expect_every_read_found("paired.sff", names, 20);
}

}  // namespace
}  // namespace pelkrin
