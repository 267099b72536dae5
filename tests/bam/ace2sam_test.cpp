// Against samtools' ace2sam on the files it reads (the strict layout): the
// same POS and CIGAR for every read where ace2sam writes a valid record.
// ace2sam writes records that are not valid for a read that starts left of
// the contig or runs past its end (M over bases the reference does not
// have), and for pads inside a clipped end (the clip counts them, so the
// CIGAR is longer than SEQ); it writes a P for a column of pads at the end
// of a read, which Pelkrin-bam leaves out.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <sstream>
#include <string>

#include "bam_fixture.h"
#include "files.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

struct sam_line {
    std::int64_t pos = 0;  // 1-based
    std::string cigar;
    std::string seq;
};

std::map<std::string, sam_line> records_of(const std::string& sam) {
    std::map<std::string, sam_line> records;
    std::istringstream lines(sam);
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> f;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '\t');) f.push_back(field);
        if (f.size() < 10) continue;
        records[f[0]] = sam_line{std::stoll(f[3]), f[5], f[9]};
    }
    return records;
}

// The CIGAR without P operations, neighbours of one kind merged; its query
// and reference lengths.
struct cigar_sums {
    std::string text;
    std::int64_t query = 0;
    std::int64_t reference = 0;
};

cigar_sums without_pads(const std::string& cigar) {
    cigar_sums s;
    std::vector<std::pair<char, std::int64_t>> ops;
    const std::regex op("(\\d+)([MIDNSHP=X])");
    for (auto it = std::sregex_iterator(cigar.begin(), cigar.end(), op); it != std::sregex_iterator(); ++it) {
        const char kind = (*it)[2].str()[0];
        const std::int64_t n = std::stoll((*it)[1].str());
        if (kind == 'P') continue;
        if (!ops.empty() && ops.back().first == kind) ops.back().second += n;
        else ops.emplace_back(kind, n);
        if (kind == 'M' || kind == 'I' || kind == 'S') s.query += n;
        if (kind == 'M' || kind == 'D') s.reference += n;
    }
    for (const auto& [kind, n] : ops) s.text.append(std::to_string(n)).push_back(kind);
    return s;
}

TEST(BamAgainstAce2sam, SamePlaceAndCigarWhereAce2samIsValid) {
    const std::string ace2sam = tool_path("ace2sam");
    ASSERT_FALSE(ace2sam.empty()) << "ace2sam (Debian samtools) is not installed";
    std::size_t compared = 0;
    std::size_t invalid = 0;
    for (const auto& [name, ace_path] : std::vector<std::pair<std::string, fs::path>>{
             {"example", source_file("example/example.ace")},
             {"phrap", data_file("contig1.ace")},
             {"consed", data_file("consed_sample.ace")}}) {
        SCOPED_TRACE(name);
        const fs::path dir = scratch_subdir(name);
        const std::string text = read_file(ace_path);
        write_file(dir / "asm.ace", text);
        const std::vector<contig> contigs = contigs_of(text);
        write_file(dir / "reads.sff", sff_of_reads(contigs));
        ASSERT_EQ(run_program({pelkrin_bam_binary(), "asm.ace", "reads.sff"}, dir).status, 0);
        const program_result theirs = run_program({ace2sam, "asm.ace"}, dir);
        ASSERT_EQ(theirs.status, 0) << theirs.err;
        std::map<std::string, const READ*> read_of;
        std::map<std::string, std::int64_t> length_of;  // unpadded, by read
        for (const contig& c : contigs) {
            std::int64_t bases = 0;
            for (char b : c.consensus) bases += b == '*' ? 0 : 1;
            for (const auto& [n, r] : c.reads) {
                read_of[n] = &r;
                length_of[n] = bases;
            }
        }
        std::map<std::string, bam_read> ours;
        for (bam_read& r : read_bam(dir / "asm.bam")) ours[r.name] = r;
        for (const auto& [read_name, line] : records_of(theirs.out)) {
            const cigar_sums s = without_pads(line.cigar);
            const READ& r = *read_of.at(read_name);
            const bool inside = r.pos >= 1 && line.pos >= 1 && line.pos + s.reference - 1 <= length_of.at(read_name);
            if (!inside || s.query != static_cast<std::int64_t>(line.seq.size())) {
                ++invalid;
                continue;
            }
            const bam_read& mine = ours.at(read_name);
            EXPECT_EQ(mine.pos + 1, line.pos) << read_name;
            EXPECT_EQ(mine.cigar, s.text) << read_name << " (ace2sam: " << line.cigar << ")";
            ++compared;
        }
    }
    EXPECT_GT(compared, 60u);
    EXPECT_GT(invalid, 0u) << "the files hold reads ace2sam gets wrong";
}

}  // namespace
}  // namespace pelkrin::test
