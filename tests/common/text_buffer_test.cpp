// Where a text buffer hands its bytes on depends only on what is written to it.
#include "common/text_buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text_buffer_lines.h"


namespace pelkrin {
namespace {

using test::recording_buffer;
using test::write_lines;

TEST(TextBuffer, HandsOnWhenThePieceToComeWouldNotFit) {
    recording_buffer out;
    write_lines(out, 3 * text_buffer::default_size);
    out.close();
    ASSERT_GE(out.handed.size(), 3u);
    std::size_t total = 0;
    for (std::size_t i = 0; i < out.handed.size(); ++i) {
        total += out.handed[i].size();
        EXPECT_LE(out.handed[i].size(), text_buffer::default_size);
        // Every buffer but the last went on while room was left for a line's worst case only.
        if (i + 1 < out.handed.size()) {
            EXPECT_GT(out.handed[i].size(), text_buffer::default_size - 20000);
        }
    }
    EXPECT_EQ(static_cast<std::int64_t>(total), out.written());
}

TEST(TextBuffer, APieceLargerThanTheBufferMakesItGrow) {
    recording_buffer out;
    out.write("x");
    const std::string big(text_buffer::default_size + 10, 'y');
    out.write(big);
    out.write("z");
    out.close();
    ASSERT_EQ(out.handed.size(), 3u);
    EXPECT_EQ(out.handed[0], "x");
    EXPECT_TRUE(out.handed[1] == big);
    EXPECT_EQ(out.handed[2], "z") << "the buffer keeps its larger size, which the piece filled";
}

}  // namespace
}  // namespace pelkrin
