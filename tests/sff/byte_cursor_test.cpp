// The stream rules that every SFF decoder reads by.
#include "sff/byte_cursor.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace pelkrin {
namespace {

const std::array<std::uint8_t, 10> ten = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

TEST(ByteCursor, ReadsAtItsPositionCountedFromTheOrigin) {
    byte_cursor in(ten, 100, stream_state{103, false, false});
    std::uint8_t got[2] = {};
    EXPECT_EQ(in.read(got, 2), 2u);
    EXPECT_EQ(got[0], 3);
    EXPECT_EQ(in.tell(), 105);
    EXPECT_EQ(in.remaining(), 5u);
}

TEST(ByteCursor, AShortReadSetsEofAndFailAndKeepsWhatCame) {
    byte_cursor in(ten, 0, stream_state{8, false, false});
    std::uint8_t got[4] = {};
    EXPECT_EQ(in.read(got, 4), 2u);
    EXPECT_TRUE(in.eof());
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(got[1], 9);
    EXPECT_EQ(in.state().pos, 10);
    EXPECT_EQ(in.tell(), -1);
}

TEST(ByteCursor, AFailedCursorReadsNothingAndDoesNotSeek) {
    byte_cursor in(ten, 0, stream_state{2, false, true});
    std::uint8_t got = 99;
    EXPECT_EQ(in.read(&got, 1), 0u);
    EXPECT_EQ(got, 99);
    in.seek(5);
    EXPECT_EQ(in.state().pos, 2);
    EXPECT_EQ(in.skip(1), 0u);
    in.clear();
    in.seek(5);
    EXPECT_EQ(in.tell(), 5);
}

TEST(ByteCursor, ASeekClearsEofOnly) {
    byte_cursor in(ten, 0, stream_state{9, true, false});
    in.seek_relative(-4);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(in.tell(), 5);
    in.seek(-1);
    EXPECT_TRUE(in.fail());
}

TEST(ByteCursor, SeekingPastTheEndIsAllowedAndTheNextReadFails) {
    byte_cursor in(ten, 0, stream_state{});
    in.seek(50);
    EXPECT_TRUE(in.good());
    EXPECT_EQ(in.remaining(), 0u);
    EXPECT_TRUE(in.rest().empty());
    std::uint8_t got = 0;
    EXPECT_EQ(in.read(&got, 1), 0u);
    EXPECT_TRUE(in.eof());
}

TEST(ByteCursor, SkipPassesWhatThereIsThenFails) {
    byte_cursor in(ten, 0, stream_state{6, false, false});
    EXPECT_EQ(in.skip(3), 3u);
    EXPECT_TRUE(in.good());
    EXPECT_EQ(in.skip(3), 1u);
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(in.state().pos, 10);
}

TEST(ByteCursor, AReadOfNothingOnAGoodCursorSucceeds) {
    byte_cursor in(ten, 0, stream_state{10, false, false});
    EXPECT_EQ(in.read(nullptr, 0), 0u);
    EXPECT_TRUE(in.good());
}

}  // namespace
}  // namespace pelkrin
