// The bytes of an SFF file: from a file by positioned reads or in place, and
// from memory.
#include "sff/sff_source.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <string>
#include <vector>

#include "files.h"

namespace pelkrin {
namespace {

std::string text(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

TEST(SffSource, PositionedReadsOfAFile) {
    const auto path = test::scratch_dir() / "source.sff";
    test::write_file(path, "0123456789");
    sff_source in;
    ASSERT_TRUE(in.open(path.string()));
    EXPECT_EQ(in.size(), 10);
    std::vector<std::uint8_t> got(4);
    EXPECT_EQ(in.read_at(3, got.data(), got.size()), 4u);
    EXPECT_EQ(text(got), "3456");
    EXPECT_EQ(in.read_at(8, got.data(), got.size()), 2u) << "short at the end";
    EXPECT_EQ(in.read_at(-1, got.data(), 1), 0u);
    std::vector<std::uint8_t> buffer;
    EXPECT_EQ(text(in.bytes_at(7, 100, buffer)), "789");
    EXPECT_EQ(text(in.contents()), "0123456789");
    EXPECT_EQ(in.bytes_read(), 4u + 2u + 3u);
}

TEST(SffSource, MemoryGivenOrKept) {
    const std::string bytes = "abcdef";
    const std::vector<std::uint8_t> outside = test::bytes_of(bytes);
    sff_source given;
    given.use_memory(outside);
    EXPECT_EQ(given.size(), 6);
    EXPECT_EQ(given.contents().data(), outside.data()) << "not copied";
    sff_source kept;
    kept.keep_memory(test::bytes_of(bytes));
    std::vector<std::uint8_t> buffer;
    EXPECT_EQ(text(kept.bytes_at(2, 3, buffer)), "cde");
    EXPECT_TRUE(buffer.empty()) << "read in place";
    EXPECT_EQ(text(kept.contents()), "abcdef");
    EXPECT_TRUE(kept.bytes_at(6, 1, buffer).empty());
    EXPECT_TRUE(kept.bytes_at(-2, 1, buffer).empty());
}

TEST(SffSource, AFileThatIsNotRegularHasNoSizeAndNoContents) {
    sff_source in;
    ASSERT_TRUE(in.open("/dev/null"));
    EXPECT_EQ(in.size(), -1);
    EXPECT_TRUE(in.contents().empty());
    std::uint8_t b = 0;
    EXPECT_EQ(in.read_at(0, &b, 1), 0u);
}

TEST(SffSource, AnEmptyFileHasEmptyContents) {
    const auto path = test::scratch_dir() / "empty.sff";
    test::write_file(path, "");
    sff_source in;
    ASSERT_TRUE(in.open(path.string()));
    EXPECT_EQ(in.size(), 0);
    EXPECT_TRUE(in.contents().empty());
}

TEST(SffSource, AFileThatShrinksUnderItsMappingReadsZerosAndSaysSo) {
    const auto path = test::scratch_dir() / "shrinks.sff";
    test::write_file(path, std::string(100000, 'x'));
    sff_source in;
    ASSERT_TRUE(in.open(path.string()));
    const std::span<const std::uint8_t> bytes = in.contents();
    ASSERT_EQ(bytes.size(), 100000u);
    EXPECT_EQ(bytes[99999], 'x');
    EXPECT_FALSE(in.changed());
    ASSERT_EQ(::truncate(path.c_str(), 5000), 0);
    EXPECT_EQ(bytes[4999], 'x') << "what the file still holds";
    EXPECT_EQ(bytes[5000], 0) << "the rest of its last page";
    EXPECT_FALSE(in.changed()) << "nothing past the file's end was touched yet";
    EXPECT_EQ(bytes[70000], 0);
    EXPECT_TRUE(in.changed());
    EXPECT_EQ(bytes[8192], 0) << "every page past the end reads zeros";
    EXPECT_EQ(bytes[99999], 0);
    EXPECT_EQ(bytes[100], 'x');
}

TEST(SffSource, AFileEmptiedUnderItsMappingReadsZeros) {
    const auto path = test::scratch_dir() / "emptied.sff";
    test::write_file(path, std::string(3 * 4096 + 10, 'y'));
    sff_source in;
    ASSERT_TRUE(in.open(path.string()));
    const std::span<const std::uint8_t> bytes = in.contents();
    ASSERT_EQ(::truncate(path.c_str(), 0), 0);
    std::size_t sum = 0;
    for (const std::uint8_t b : bytes) sum += b;
    EXPECT_EQ(sum, 0u);
    EXPECT_TRUE(in.changed());
}

TEST(SffSource, MemoryNeverChanges) {
    sff_source in;
    in.keep_memory(test::bytes_of("abc"));
    EXPECT_FALSE(in.changed());
}

TEST(SffSource, AMissingFileCannotBeOpened) {
    sff_source in;
    EXPECT_FALSE(in.open((test::scratch_dir() / "missing.sff").string()));
    EXPECT_FALSE(in.is_open());
}

}  // namespace
}  // namespace pelkrin
