#include "sff/binary_input.h"

#include <gtest/gtest.h>

#include <vector>

#include "files.h"

namespace pelkrin {
namespace {

std::string numbered_bytes(std::size_t n) {
    std::string s(n, '\0');
    for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>(i * 7 + 3);
    return s;
}

class BinaryInput : public ::testing::TestWithParam<bool> {
protected:
    void open_with(const std::string& bytes) {
        path_ = (test::scratch_dir() / "in.bin").string();
        test::write_file(path_, bytes);
        ASSERT_TRUE(in_.open(path_));
        in_.set_forward_walk(GetParam());
    }
    std::string path_;
    binary_input in_;
};

TEST_P(BinaryInput, ReadsWhatTheFileHolds) {
    const std::string bytes = numbered_bytes(10000);
    open_with(bytes);
    std::string got(300, '\0');
    in_.seekg(5000);
    in_.read(got.data(), got.size());
    EXPECT_TRUE(in_.good());
    EXPECT_EQ(in_.gcount(), 300u);
    EXPECT_EQ(got, bytes.substr(5000, 300));
    in_.seekg_relative(-5300);
    in_.read(got.data(), 10);
    EXPECT_EQ(got.substr(0, 10), bytes.substr(0, 10));
    EXPECT_EQ(in_.tellg(), 10);
}

TEST_P(BinaryInput, ShortReadSetsEndAndFailure) {
    open_with(numbered_bytes(100));
    char buffer[64];
    in_.seekg(90);
    in_.read(buffer, sizeof buffer);
    EXPECT_EQ(in_.gcount(), 10u);
    EXPECT_TRUE(in_.eof());
    EXPECT_TRUE(in_.fail());
    EXPECT_EQ(in_.tellg(), -1);
}

TEST_P(BinaryInput, FailedStreamNeitherReadsNorSeeksUntilCleared) {
    open_with(numbered_bytes(100));
    char buffer[200];
    in_.read(buffer, sizeof buffer);
    ASSERT_TRUE(in_.fail());
    in_.seekg(10);
    EXPECT_FALSE(in_.eof()) << "a seek clears eof first";
    EXPECT_TRUE(in_.fail());
    in_.read(buffer, 1);
    EXPECT_EQ(in_.gcount(), 0u);
    in_.clear();
    EXPECT_EQ(in_.tellg(), 100) << "the failed seek moved nothing";
    in_.seekg(10);
    in_.read(buffer, 1);
    EXPECT_EQ(in_.gcount(), 1u);
}

TEST_P(BinaryInput, SeekPastTheEndSucceedsAndTheReadComesUpEmpty) {
    open_with(numbered_bytes(100));
    in_.seekg(std::int64_t{1} << 40);
    EXPECT_TRUE(in_.good());
    char buffer[16];
    in_.read(buffer, sizeof buffer);
    EXPECT_EQ(in_.gcount(), 0u);
    EXPECT_TRUE(in_.fail());
}

TEST_P(BinaryInput, NegativeSeekFails) {
    open_with(numbered_bytes(100));
    in_.seekg(-1);
    EXPECT_TRUE(in_.fail());
    in_.clear();
    in_.seekg(5);
    in_.seekg_relative(-6);
    EXPECT_TRUE(in_.fail());
}

TEST_P(BinaryInput, SkipConsumesLikeARead) {
    open_with(numbered_bytes(100));
    in_.skip(40);
    EXPECT_EQ(in_.tellg(), 40);
    in_.skip(100);
    EXPECT_TRUE(in_.eof());
    EXPECT_TRUE(in_.fail());
    EXPECT_EQ(in_.gcount(), 60u);
}

TEST_P(BinaryInput, EmptyFile) {
    open_with("");
    char c;
    in_.read(&c, 1);
    EXPECT_EQ(in_.gcount(), 0u);
    EXPECT_TRUE(in_.eof());
    EXPECT_EQ(in_.remaining(), 0u);
}

INSTANTIATE_TEST_SUITE_P(RandomAndWalk, BinaryInput, ::testing::Bool());

TEST(BinaryInputWalk, PagesBehindTheWalkAreLetGo) {
    const std::string bytes(std::size_t{48} << 20, 'x');
    auto path = (test::scratch_dir() / "big.bin").string();
    test::write_file(path, bytes);
    binary_input in;
    ASSERT_TRUE(in.open(path));
    ASSERT_TRUE(in.mapped());
    in.set_forward_walk(true);
    char header[16];
    std::uint64_t most = 0;
    for (std::int64_t at = 0; at + 16 <= static_cast<std::int64_t>(bytes.size()); at += 3000) {
        in.seekg(at);
        in.read(header, sizeof header);
        most = std::max(most, in.mapped_resident());
    }
    EXPECT_LE(most, std::uint64_t{17} << 20);
    EXPECT_GT(in.released_to(), std::int64_t{16} << 20);
    EXPECT_EQ(in.bytes_fetched(), (bytes.size() + 2999) / 3000 * 16);
}

TEST(BinaryInputWalk, ReadFarPastTheEndLetsGoOfNothingBeyondTheMapping) {
    auto path = (test::scratch_dir() / "small.bin").string();
    test::write_file(path, numbered_bytes(20000));
    binary_input in;
    ASSERT_TRUE(in.open(path));
    in.set_forward_walk(true);
    in.seekg(std::int64_t{6} << 30);
    char c;
    in.read(&c, 1);
    EXPECT_LE(in.released_to(), in.size());
}

TEST(BinaryInputRandom, FetchAtLeavesTheStreamAsItWas) {
    const std::string bytes = numbered_bytes(1000);
    const auto path = test::scratch_dir() / "in.bin";
    test::write_file(path, bytes);
    binary_input in;
    ASSERT_TRUE(in.open(path.string()));
    in.seekg(10);
    std::string got(50, '\0');
    EXPECT_EQ(in.fetch_at(980, reinterpret_cast<unsigned char*>(got.data()), got.size()), 20u) << "short at the end";
    EXPECT_EQ(got.substr(0, 20), bytes.substr(980));
    EXPECT_EQ(in.fetch_at(-1, reinterpret_cast<unsigned char*>(got.data()), 1), 0u);
    EXPECT_TRUE(in.good());
    EXPECT_EQ(in.tellg(), 10);
    EXPECT_EQ(in.bytes_fetched(), 0u);
}

TEST(BinaryInputRandom, ReadsInsideAGivenBlockComeFromIt) {
    const auto path = test::scratch_dir() / "in.bin";
    test::write_file(path, numbered_bytes(1000));
    binary_input in;
    ASSERT_TRUE(in.open(path.string()));
    // Bytes unlike the file's show where a read took its bytes from.
    const std::string block(100, 'x');
    in.use_block(200, {reinterpret_cast<const unsigned char*>(block.data()), block.size()});
    in.seekg(250);
    std::string got(10, '\0');
    in.read(got.data(), got.size());
    EXPECT_EQ(got, std::string(10, 'x'));
    // Past the block, reading goes back to the file, at the right place.
    in.seekg(295);
    in.read(got.data(), got.size());
    EXPECT_EQ(got, std::string(5, 'x') + numbered_bytes(1000).substr(300, 5));
    in.use_block(200, {reinterpret_cast<const unsigned char*>(block.data()), block.size()});
    in.drop_block();
    in.seekg(250);
    in.read(got.data(), got.size());
    EXPECT_EQ(got, numbered_bytes(1000).substr(250, 10)) << "a dropped block is not read from";
}

TEST(BinaryInputRandom, ABlockFetchedAheadReadsLikeTheStreamsOwn) {
    const std::string bytes = numbered_bytes(5000);
    const auto path = test::scratch_dir() / "in.bin";
    test::write_file(path, bytes);
    for (const std::int64_t at : {0, 1234, 4990, 5000, 6000}) {
        binary_input own;
        binary_input given;
        ASSERT_TRUE(own.open(path.string()));
        ASSERT_TRUE(given.open(path.string()));
        std::vector<unsigned char> block(own.jump_fill());
        block.resize(given.fetch_at(at, block.data(), block.size()));
        given.use_block(at, block);
        for (binary_input* in : {&own, &given}) in->seekg(at);
        for (const std::size_t n : {16, 3000, 8000}) {
            std::string a(n, '\0');
            std::string b(n, '\1');
            own.read(a.data(), n);
            given.read(b.data(), n);
            SCOPED_TRACE(::testing::Message() << "at " << at << ", read " << n);
            EXPECT_EQ(a.substr(0, own.gcount()), b.substr(0, given.gcount()));
            EXPECT_EQ(own.gcount(), given.gcount());
            EXPECT_EQ(own.eof(), given.eof());
            EXPECT_EQ(own.fail(), given.fail());
            EXPECT_EQ(own.tellg(), given.tellg());
        }
    }
}

TEST(BinaryInputWalk, AFileEmptiedUnderTheStreamReadsAsEnded) {
    const auto path = test::scratch_dir() / "in.bin";
    test::write_file(path, numbered_bytes(100000));
    binary_input in;
    ASSERT_TRUE(in.open(path.string()));
    in.set_forward_walk(true);
    ASSERT_TRUE(in.mapped());
    test::write_file(path, "");  // reading the old mapping now would end the process
    in.file_changed();
    EXPECT_FALSE(in.mapped());
    EXPECT_EQ(in.size(), 0);
    in.seekg(50000);
    char c = 0;
    in.read(&c, 1);
    EXPECT_EQ(in.gcount(), 0u);
    EXPECT_TRUE(in.eof());
}

TEST(BinaryInputRandom, MissingFileDoesNotOpen) {
    binary_input in;
    EXPECT_FALSE(in.open((test::scratch_dir() / "none.bin").string()));
    EXPECT_FALSE(in.is_open());
}

}  // namespace
}  // namespace pelkrin
