// The whole run through the binary: both output files, standard output, standard
// error and the exit status, byte for byte.
#include <gtest/gtest.h>

#include <filesystem>

#include "expected_texts.h"
#include "files.h"
#include "run_fixture.h"

namespace pelkrin::test {
namespace {

const std::string completion = expected_completion("asm.qdx", "asm.reads");

std::string worked_example_ace() {
    // Contig1 lists readB before readA; the reads file holds them in name order.
    return ace_file({ace_contig("Contig1", {"readB", "readA"}), ace_contig("Contig2", {"readC"})});
}

TEST(RunWorkedExample, ReadsAndIndexFilesByteForByte) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, completion);
    const std::string reads = read_file(files.dir / "asm.reads");
    EXPECT_EQ(reads,
              ">Contig1\t2\t1\n"         // offset 0
              "readA\t1\n"               // 13
              "35\t35\t33\t33\t30\n"     // 21
              "readB\t1\n"               // 36
              "40\t38\t38\n"             // 44
              ">Contig2\t1\t1\n"         // 53
              "readC\t1\n"               // 66
              "32\t31\n");               // 74
    EXPECT_EQ(reads.size(), 80u);
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), "Contig1\t13\t2\t1\nContig2\t66\t1\t1\n");
}

TEST(RunWorkedExample, FlowgramEntryOfReadA) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files, {"-f"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, completion);
    const std::string contig1_header = ">Contig1\t2\t3\n";
    const std::string contig1_reads =
        "readA\t1\n"
        "35\t35\t33\t33\t30\n"
        "0\t2\t4\t4\t6\n"
        "101\t2\t98\t4\t197\t0\t103\t5\n"
        "readB\t1\n"
        "40\t38\t38\n"
        "1\t3\t3\n"
        "0\t100\t0\t200\t0\t0\t0\t0\n";
    const std::string contig2_header = ">Contig2\t1\t3\n";
    const std::string contig2_reads =
        "readC\t1\n"
        "32\t31\n"
        "2\t5\n"
        "0\t0\t100\t0\t0\t100\t0\t0\n";
    EXPECT_EQ(read_file(files.dir / "asm.reads"), contig1_header + contig1_reads + contig2_header + contig2_reads);
    const std::size_t second = contig1_header.size() + contig1_reads.size() + contig2_header.size();
    EXPECT_EQ(read_file(files.dir / "asm.qdx"),
              "Contig1\t13\t2\t3\nContig2\t" + std::to_string(second) + "\t1\t3\n");
}

TEST(RunWorkedExample, LittleEndianSffGivesTheSameFiles) {
    sff_fixture f = worked_example_sff();
    f.big_endian = false;
    auto big = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    auto big_run = run_pelkrin(big, {"-f"});
    const std::string big_reads = read_file(big.dir / "asm.reads");
    auto little = write_inputs(worked_example_ace(), build_sff(f).bytes);
    auto little_run = run_pelkrin(little, {"-f"});
    EXPECT_EQ(little_run.status, 0);
    EXPECT_EQ(read_file(little.dir / "asm.reads"), big_reads);
}

// Edge cases of the output files.

TEST(OutputFilesEdge, ContigWithoutReadsPointsAtTheNextHeader) {
    auto files = write_inputs(ace_file({ace_contig("Empty", {}), ace_contig("Next", {"readC"}), ace_contig("Last", {})}),
                              build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0);
    const std::string reads = read_file(files.dir / "asm.reads");
    EXPECT_EQ(reads, ">Empty\t0\t1\n>Next\t1\t1\nreadC\t1\n32\t31\n>Last\t0\t1\n");
    // Empty ends at 11, where Next's header begins; Last ends at the file's length.
    EXPECT_EQ(read_file(files.dir / "asm.qdx"),
              "Empty\t11\t0\t1\nNext\t21\t1\t1\nLast\t" + std::to_string(reads.size()) + "\t0\t1\n");
}

TEST(OutputFilesEdge, EmptyClippedRangeGivesEmptyLinesButAFullFlowgram) {
    sff_fixture f = worked_example_sff();
    f.reads[0].clip_qual_left = 3;  // readC has 2 bases: nothing is kept
    auto files = write_inputs(ace_file({ace_contig("C", {"readC"})}), build_sff(f).bytes);
    auto r = run_pelkrin(files, {"-f"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(read_file(files.dir / "asm.reads"), ">C\t1\t3\nreadC\t1\n\n\n0\t0\t100\t0\t0\t100\t0\t0\n");
}

TEST(OutputFilesEdge, OneClippedBaseGivesLinesWithoutATab) {
    sff_fixture f = worked_example_sff();
    f.reads[0].clip_adapter_right = 1;
    auto files = write_inputs(ace_file({ace_contig("C", {"readC"})}), build_sff(f).bytes);
    auto r = run_pelkrin(files, {"-f"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(read_file(files.dir / "asm.reads"), ">C\t1\t3\nreadC\t1\n32\n2\n0\t0\t100\t0\t0\t100\t0\t0\n");
}

TEST(OutputFilesEdge, OffsetsGrowStrictly) {
    auto files = write_inputs(ace_file({ace_contig("a", {}), ace_contig("b", {}), ace_contig("c", {"readA"}),
                                        ace_contig("d", {}), ace_contig("e", {"readB", "readC"})}),
                              build_sff(worked_example_sff()).bytes);
    ASSERT_EQ(run_pelkrin(files).status, 0);
    std::istringstream qdx(read_file(files.dir / "asm.qdx"));
    std::string name;
    long long offset, previous = -1;
    int count, lines, rows = 0;
    while (qdx >> name >> offset >> count >> lines) {
        EXPECT_GT(offset, previous) << name;
        EXPECT_GE(offset - previous, 6) << "a contig header line is at least six bytes";
        previous = offset;
        ++rows;
    }
    EXPECT_EQ(rows, 5);
}

TEST(OutputFilesEdge, ReadOfTwoContigsIsWrittenInBoth) {
    auto files = write_inputs(ace_file({ace_contig("X", {"readB"}), ace_contig("Y", {"readA", "readB"})}),
                              build_sff(worked_example_sff()).bytes);
    ASSERT_EQ(run_pelkrin(files).status, 0);
    EXPECT_EQ(read_file(files.dir / "asm.reads"),
              ">X\t1\t1\nreadB\t1\n40\t38\t38\n>Y\t2\t1\nreadA\t1\n35\t35\t33\t33\t30\nreadB\t1\n40\t38\t38\n");
}

TEST(OutputFilesEdge, ReadCountIsTheNumberOfDistinctNames) {
    // The CO line says 3 reads; two AF lines name readA, so the map holds two.
    std::string contig =
        "CO Dup 10 3 1 U\nACGTACGTAC\n\nBQ\n20\n\nAF readA U 1\nAF readB U 2\nAF readA C 3\nBS 1 10 readA\n\n";
    for (const char* r : {"readA", "readB", "readA"})
        contig += std::string("RD ") + r + " 3 0 0\nACG\n\nQA 1 3 1 3\nDS x\n\n";
    auto files = write_inputs(ace_file({contig}), build_sff(worked_example_sff()).bytes);
    ASSERT_EQ(run_pelkrin(files).status, 0);
    EXPECT_EQ(read_file(files.dir / "asm.reads"), ">Dup\t2\t1\nreadA\t1\n35\t35\t33\t33\t30\nreadB\t1\n40\t38\t38\n");
}

// Edge cases of the run.

TEST(RunEdge, AceFileWithoutContigs) {
    auto files = write_inputs("AS 0 0\n", build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, completion);
    EXPECT_TRUE(std::filesystem::exists(files.dir / "asm.reads"));
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), "");
}

TEST(RunEdge, ExistingOutputFilesAreEmptiedFirst) {
    auto files = write_inputs("AS 0 0\n", build_sff(worked_example_sff()).bytes);
    write_file(files.dir / "asm.reads", "old contents\n");
    write_file(files.dir / "asm.qdx", "old index\n");
    ASSERT_EQ(run_pelkrin(files).status, 0);
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), "");
}

const std::string worked_example_reads =
    ">Contig1\t2\t1\nreadA\t1\n35\t35\t33\t33\t30\nreadB\t1\n40\t38\t38\n>Contig2\t1\t1\nreadC\t1\n32\t31\n";
const std::string worked_example_index = "Contig1\t13\t2\t1\nContig2\t66\t1\t1\n";

TEST(RunEdge, LongerOldOutputsLeaveNothingBehind) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    write_file(files.dir / "asm.reads", std::string(300000, 'x'));
    write_file(files.dir / "asm.qdx", std::string(300000, 'y'));
    auto r = run_pelkrin(files);
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(read_file(files.dir / "asm.reads"), worked_example_reads);
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), worked_example_index);
}

// The worked example's inputs, with one of them (files.ace or files.sff) renamed to `name`.
run_files with_input_named(std::string run_files::*input, const std::string& name) {
    run_files files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::rename(files.dir / (files.*input), files.dir / name);
    files.*input = name;
    return files;
}

TEST(RunEdge, AceFileThatIsAlsoTheReadsOutputIsRefused) {
    // "asm.reads" keeps the prefix "asm": the reads file would be the assembly itself.
    const run_files files = with_input_named(&run_files::ace, "asm.reads");
    const std::string before = read_file(files.dir / "asm.reads");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: output file asm.reads would overwrite input file asm.reads\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), before);
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.qdx"));
}

TEST(RunEdge, SffFileThatIsAlsoTheReadsOutputIsRefused) {
    const run_files files = with_input_named(&run_files::sff, "asm.reads");
    const std::string before = read_file(files.dir / "asm.reads");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: output file asm.reads would overwrite input file asm.reads\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), before);
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.qdx"));
}

TEST(RunEdge, UnwritableIndexFileStillEmptiesAnOldReadsFile) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    write_file(files.dir / "asm.reads", "old contents\n");
    std::filesystem::create_directory(files.dir / "asm.qdx");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
}

TEST(RunEdge, UnwritableReadsFileEndsBeforeTheIndexIsBuilt) {
    // The SFF file claims more reads than it holds: had the index walk run, it
    // would have reported a short read on standard output.
    sff_fixture f = worked_example_sff();
    f.claimed_reads = 9;
    auto files = write_inputs(worked_example_ace(), build_sff(f).bytes);
    std::filesystem::create_directory(files.dir / "asm.reads");  // a folder is never a writable file
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not open file asm.reads\n");
    EXPECT_EQ(r.out, "");
}

TEST(RunEdge, UnwritableIndexFileLeavesAnEmptyReadsFile) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_directory(files.dir / "asm.qdx");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not open file asm.qdx\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
}

TEST(RunEdge, OutputFolderThatDoesNotExist) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_directory(files.dir / "in");
    std::filesystem::rename(files.dir / files.ace, files.dir / "in" / "asm.ace");
    files.ace = "in/asm.ace";
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0) << "the prefix keeps the folder: outputs go beside the ACE file";
    EXPECT_TRUE(std::filesystem::exists(files.dir / "in" / "asm.reads"));
    EXPECT_EQ(r.out, expected_completion("in/asm.qdx", "in/asm.reads"));
}

TEST(RunEdge, ReadMissingFromTheSffIsDecodedAtOffsetZero) {
    // Offset 0 holds the common header. Its first 16 bytes, read as a read header,
    // give a header length of 0x2E73, a name of 0x6666 bytes and 1 base with no
    // clip: decoding walks 26,214 name bytes, 2,000 flowgram values, then takes
    // one flow index, one base and one quality score.
    sff_fixture f;
    f.flows = 2000;
    for (int i = 0; i < 12; ++i)
        f.reads.push_back(read_from_flows(std::string("r").append(std::to_string(i)), {0, 1, 2}, {20, 21, 22}, 2000));
    const std::string bytes = build_sff(f).bytes;
    const std::size_t quality_at = 16 + 0x6666 + 2 * 2000 + 1 + 1;
    ASSERT_LT(quality_at, bytes.size());
    const int quality = static_cast<unsigned char>(bytes[quality_at]);
    auto files = write_inputs(ace_file({ace_contig("G", {"ghost", "r5"})}), bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, completion);
    EXPECT_EQ(read_file(files.dir / "asm.reads"),
              ">G\t2\t1\nghost\t1\n" + std::to_string(quality) + "\nr5\t1\n20\t21\t22\n");
}

TEST(RunEdge, MissingReadRunningOffTheEndOfASmallFileLeavesLaterReadsEmpty) {
    // In a file smaller than the name that offset 0 claims, the decoding runs off
    // the end: the stream stays failed, as a standard stream does, and every later
    // look-up returns at once, leaving the previous flowgram in place.
    auto files = write_inputs(ace_file({ace_contig("G", {"ghost", "readC"})}), build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files, {"-f"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    const std::string reads = read_file(files.dir / "asm.reads");
    // ghost keeps the one base it claims; its score and flow index were never
    // read (0), so its flow is -1.
    EXPECT_EQ(reads.substr(0, 20), ">G\t2\t3\nghost\t1\n0\n-1\n");
    EXPECT_NE(reads.find("readC\t1\n\n\n"), std::string::npos);
}

// Every message of the run and the readers, with its status.

TEST(RunMessages, MissingAceFile) {
    auto files = write_inputs("", build_sff(worked_example_sff()).bytes);
    files.ace = "none.ace";
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "The file: none.ace can not be opened\n");
    EXPECT_EQ(r.out, "");
    EXPECT_FALSE(std::filesystem::exists(files.dir / "none.reads"));
}

// A device is no file to read an assembly from: /dev/zero would never end.
TEST(RunMessages, ADeviceAsTheAceFileCannotBeOpened) {
    auto files = write_inputs("", build_sff(worked_example_sff()).bytes);
    files.ace = "/dev/zero";
    run_limits limits;
    limits.seconds = 20;
    auto r = run_pelkrin(files, {}, limits);
    EXPECT_FALSE(r.timed_out);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "The file: /dev/zero can not be opened\n");
    EXPECT_EQ(r.out, "");
}

TEST(RunMessages, FileNotBeginningWithAs) {
    auto files = write_inputs("CO Contig1 10 1 1 U\n", build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the input file asm.ace does not like an ACE file\n");
    EXPECT_EQ(r.out, "");
}

TEST(RunMessages, EmptyAceFile) {
    auto files = write_inputs("", build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the input file asm.ace does not like an ACE file\n");
}

TEST(RunMessages, UnexpectedTagKeepsWhatWasWritten) {
    // The second contig has a stray record before its CO line: the process ends
    // with status 1, and the first contig's block has reached both files.
    auto files = write_inputs(ace_file({ace_contig("Contig1", {"readB", "readA"}), "WA{\nx\n}\nXY 1 2\n\n"}),
                              build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: tag 'XY' should be not in the ACE file!\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), ">Contig1\t2\t1\nreadA\t1\n35\t35\t33\t33\t30\nreadB\t1\n40\t38\t38\n");
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), "Contig1\t13\t2\t1\n");
}

// An AS line that announces no contig, or whose counts cannot be read, in a
// file that holds contigs: the reader reads none, the outputs are the empty
// files it leads to, and the run says why instead of "Done!".
TEST(RunMessages, AsLineThatAnnouncesNoneOfTheFilesContigs) {
    const std::string contigs = worked_example_ace().substr(worked_example_ace().find("\n\n") + 2);
    for (const char* as_line : {"AS 0 0", "AS 3", "AS x y", "AS 2147483648 57", "AS 0 3"}) {
        SCOPED_TRACE(as_line);
        auto files = write_inputs(std::string(as_line) + "\n\n" + contigs, build_sff(worked_example_sff()).bytes);
        write_file(files.dir / "asm.reads", "earlier\n");
        auto r = run_pelkrin(files);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "Error: the ACE file asm.ace holds contigs that its AS line does not announce\n");
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
        EXPECT_EQ(read_file(files.dir / "asm.qdx"), "");
    }
}

// With the SFF file cut short too, the ACE file's message comes first.
TEST(RunMessages, AsLineThatAnnouncesNoneBeforeACutSffFile) {
    sff_fixture f = worked_example_sff();
    f.claimed_reads = 5;
    const std::string contigs = worked_example_ace().substr(worked_example_ace().find("\n\n") + 2);
    auto files = write_inputs("AS 0 0\n\n" + contigs, build_sff(f).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error ocurred while reading file reads.sff\n"
                     "Error: the ACE file asm.ace holds contigs that its AS line does not announce\n"
                     "Error: the SFF file reads.sff ends after 3 of its 5 reads\n");
    EXPECT_EQ(r.out, "Only got 0 bytes while 16 is need\n");
}

// An assembly of no contig that says so is complete.
TEST(RunMessages, AsLineOfNoContigsInAFileWithoutContigsIsComplete) {
    for (const char* text : {"AS 0 0\n", "AS 0 0\n\nWA{\nCT x\n}\n", "AS x\n\n  COx y\n"}) {
        SCOPED_TRACE(text);
        auto files = write_inputs(text, build_sff(worked_example_sff()).bytes);
        auto r = run_pelkrin(files);
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.err, "");
        EXPECT_EQ(r.out, completion);
        EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
    }
}

TEST(RunMessages, RdWithoutAf) {
    std::string contig = ace_contig("Contig1", {"readA"});
    contig.replace(contig.find("RD readA"), 8, "RD readZ");
    auto files = write_inputs(ace_file({contig}), build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: AF tag for read readZ is missing\n");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
}

TEST(RunMessages, SffFileThatCannotBeOpened) {
    auto files = write_inputs(worked_example_ace(), "");
    files.sff = "none.sff";
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "fail to open file none.sff\n");
    EXPECT_EQ(r.out, "");
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.reads"));
}

TEST(RunMessages, SffFileThatIsNotSff) {
    auto files = write_inputs(worked_example_ace(), "this is not an SFF file at all, just text\n");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "The input file reads.sff is not a SFF file\n");
    EXPECT_EQ(r.out, "");
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.reads"));
}

TEST(RunMessages, ShortSffHeaderIsReportedAndEndsTheRun) {
    // Too short for a header: the reads cannot be found, so the run ends there,
    // before the assembly is opened.
    auto files = write_inputs(worked_example_ace(), std::string(".sff\0\0\0\1", 8));
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error ocurred while reading file reads.sff\n");
    EXPECT_EQ(r.out, "Only got 8 bytes while 31 is need\n");
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.reads"));
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.qdx"));
}

TEST(RunMessages, SffClaimingMoreReadsThanItHolds) {
    sff_fixture f = worked_example_sff();
    f.claimed_reads = 5;
    auto files = write_inputs(worked_example_ace(), build_sff(f).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error ocurred while reading file reads.sff\n"
                     "Error: the SFF file reads.sff ends after 3 of its 5 reads\n");
    EXPECT_EQ(r.out, "Only got 0 bytes while 16 is need\n");
    // Every read it holds is written all the same.
    EXPECT_EQ(read_file(files.dir / "asm.reads"), worked_example_reads);
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), worked_example_index);
}

}  // namespace
}  // namespace pelkrin::test
