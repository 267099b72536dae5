// What Pelkrin-bam takes in: ACE files gzipped or with CR LF line ends, SFF
// files of either byte order, and several SFF files, a read that stands in
// two of them taken from the last.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "bam_fixture.h"
#include "files.h"
#include "gzip_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

std::map<std::string, bam_read> by_name(const fs::path& bam) {
    std::map<std::string, bam_read> reads;
    for (bam_read& r : read_bam(bam)) reads[r.name] = r;
    return reads;
}

TEST(BamInputs, AGzippedOrCrLfAceFileGivesTheSameRecords) {
    const fs::path dir = scratch_dir();
    const std::string ace = read_file(source_file("example/example.ace"));
    write_file(dir / "reads.sff", read_file(source_file("example/example.sff")));
    write_file(dir / "plain.ace", ace);
    write_file(dir / "zipped.ace.gz", gzipped(ace));
    std::string crlf;
    for (char c : ace) {
        if (c == '\n') crlf += '\r';
        crlf += c;
    }
    write_file(dir / "crlf.ace", crlf);
    for (const char* name : {"plain.ace", "zipped.ace.gz", "crlf.ace"}) {
        const program_result r = run_program({pelkrin_bam_binary(), name, "reads.sff"}, dir);
        ASSERT_EQ(r.status, 0) << name << ": " << r.err;
    }
    // The prefix leaves .gz and .ace off.
    ASSERT_TRUE(fs::exists(dir / "zipped.bam"));
    const auto plain = by_name(dir / "plain.bam");
    for (const char* bam : {"zipped.bam", "crlf.bam"}) {
        const auto other = by_name(dir / bam);
        ASSERT_EQ(other.size(), plain.size()) << bam;
        for (const auto& [name, r] : plain) {
            const bam_read& o = other.at(name);
            EXPECT_TRUE(o.pos == r.pos && o.cigar == r.cigar && o.seq == r.seq && o.quals == r.quals &&
                        o.flowgram == r.flowgram && o.md == r.md)
                << bam << " " << name;
        }
    }
}

// The same reads in two SFF files, one of each byte order: each read is
// taken from the last file that holds it, with that file's read group.
TEST(BamInputs, SeveralSffFilesOfEitherByteOrderTheLastOneWins) {
    const fs::path dir = scratch_dir();
    const std::string ace = read_file(data_file("contig1.ace"));
    write_file(dir / "asm.ace", ace);
    const std::vector<contig> contigs = contigs_of(ace);
    // The same reads, little-endian, every flow signal one higher.
    write_file(dir / "first.sff", sff_of_reads(contigs));
    write_file(dir / "second.sff", sff_of_reads(contigs, false, 1));
    const program_result r = run_program({pelkrin_bam_binary(), "asm.ace", "first.sff", "second.sff"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string header = bam_header(dir / "asm.bam");
    EXPECT_NE(header.find("@RG\tID:first\t"), std::string::npos) << header;
    EXPECT_NE(header.find("@RG\tID:second\t"), std::string::npos) << header;
    const auto reads = by_name(dir / "asm.bam");
    ASSERT_FALSE(reads.empty());
    // The first file alone gives the signals one lower.
    const program_result first = run_program({pelkrin_bam_binary(), "-o", "first", "asm.ace", "first.sff"}, dir);
    ASSERT_EQ(first.status, 0) << first.err;
    const auto from_first = by_name(dir / "first.bam");
    for (const auto& [name, b] : reads) {
        EXPECT_EQ(b.read_group, "second") << name;
        const bam_read& f = from_first.at(name);
        ASSERT_EQ(b.flowgram.size(), f.flowgram.size()) << name;
        for (std::size_t k = 0; k < f.flowgram.size(); ++k) EXPECT_EQ(b.flowgram[k], f.flowgram[k] + 1) << name;
        EXPECT_EQ(b.quals, f.quals) << name;
    }
}

}  // namespace
}  // namespace pelkrin::test
