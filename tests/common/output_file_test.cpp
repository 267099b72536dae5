// An output file is written under a temporary name beside its final one and
// put in place by finish(); failures to write are kept, never lost.
#include "common/output_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "files.h"

namespace pelkrin {
namespace {

std::size_t files_in(const std::filesystem::path& dir) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(dir), {}));
}

TEST(OutputFile, WrittenUnderATemporaryNameUntilFinished) {
    const auto dir = test::scratch_dir();
    test::write_file(dir / "out.txt", "previous\n");
    output_file out((dir / "out.txt").string());
    ASSERT_FALSE(out.failed_to_open());
    out.write("new ");
    out.number(42);
    out.put('\n');
    EXPECT_EQ(test::read_file(dir / "out.txt"), "previous\n") << "untouched while the run goes on";
    EXPECT_EQ(files_in(dir), 2u);
    EXPECT_EQ(out.tellp(), 7);
    EXPECT_TRUE(out.finish());
    EXPECT_EQ(test::read_file(dir / "out.txt"), "new 42\n");
    EXPECT_EQ(files_in(dir), 1u);
    EXPECT_TRUE(out.finish()) << "once only";
}

TEST(OutputFile, DestroyedUnfinishedStillPutsWhatWasWrittenInPlace) {
    const auto dir = test::scratch_dir();
    {
        output_file out((dir / "out.txt").string());
        out.write("partial");
    }
    EXPECT_EQ(test::read_file(dir / "out.txt"), "partial");
    EXPECT_EQ(files_in(dir), 1u);
}

TEST(OutputFile, AFolderThatDoesNotExistCannotBeOpened) {
    // Why, in the system's words.
    EXPECT_EQ(output_file("/nonexistent-folder/x").failure_reason(), "No such file or directory");
    const auto dir = test::scratch_dir();
    output_file out((dir / "none" / "out.txt").string());
    EXPECT_TRUE(out.failed_to_open());
    EXPECT_EQ(out.name(), (dir / "none" / "out.txt").string());
    EXPECT_FALSE(out.finish());
}

TEST(OutputFile, AWriteToAFullDeviceFailsAndIsKept) {
    output_file out("/dev/full");
    ASSERT_FALSE(out.failed_to_open());
    EXPECT_EQ(out.tellp(), -1) << "a device has no positions";
    const std::string megabyte(1u << 20, 'x');
    out.write(megabyte);
    EXPECT_FALSE(out.write_failed()) << "still in the buffer";
    out.write(megabyte);  // the buffer is full: the first megabyte goes out
    EXPECT_TRUE(out.write_failed());
    EXPECT_EQ(out.failure_reason(), "No space left on device");
    EXPECT_FALSE(out.finish());
}

// A file cut short by a failed write is worth less than the one it would
// replace: the earlier file stays, and no temporary file is left.
TEST(OutputFile, AFailedWriteLeavesTheEarlierFileAndNoTemporary) {
    const auto dir = test::scratch_dir();
    test::write_file(dir / "out.txt", "earlier\n");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    bool finished = true;
    std::string reason;
    {
        output_file out((dir / "out.txt").string());
        out.write(std::string(3u << 20, 'x'));
        finished = out.finish();
        reason = out.failure_reason();
    }
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(finished);
    EXPECT_EQ(reason, "File too large");
    EXPECT_EQ(test::read_file(dir / "out.txt"), "earlier\n");
    EXPECT_EQ(files_in(dir), 1u);
}

// Written whole but not yet put in place: a program that writes several
// files puts them in place only when all are whole, or discards them all.
TEST(OutputFile, FinishedWritingIsNotYetInPlace) {
    const auto dir = test::scratch_dir();
    test::write_file(dir / "a.txt", "earlier\n");
    output_file out((dir / "a.txt").string());
    out.write("new\n");
    ASSERT_TRUE(out.finish_writing());
    EXPECT_FALSE(out.failed_to_open());
    EXPECT_EQ(test::read_file(dir / "a.txt"), "earlier\n");
    out.discard();
    EXPECT_EQ(test::read_file(dir / "a.txt"), "earlier\n");
    EXPECT_EQ(files_in(dir), 1u) << "the temporary file is gone";
    output_file again((dir / "a.txt").string());
    again.write("new\n");
    ASSERT_TRUE(again.finish_writing());
    ASSERT_TRUE(again.finish());
    EXPECT_EQ(test::read_file(dir / "a.txt"), "new\n");
}

TEST(OutputFile, SameFileAsSeesThroughLinks) {
    const auto dir = test::scratch_dir();
    test::write_file(dir / "input", "x");
    std::filesystem::create_symlink("input", dir / "link");
    output_file out((dir / "link").string());
    EXPECT_TRUE(out.same_file_as((dir / "input").string()));
    EXPECT_FALSE(out.same_file_as((dir / "elsewhere").string()));
    out.write("y");
    EXPECT_TRUE(out.finish());
    EXPECT_TRUE(std::filesystem::is_symlink(dir / "link"));
    EXPECT_EQ(test::read_file(dir / "input"), "y");
}

}  // namespace
}  // namespace pelkrin
