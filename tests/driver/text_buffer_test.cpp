// Where a text buffer hands its bytes on depends only on what is written to it;
// a batch buffer hands the same buffers to another thread, with its marks.
#include "driver/text_buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "driver/batch_buffer.h"
#include "driver/reads_writer.h"

namespace pelkrin {
namespace {

// Keeps every hand-off.
class recording_buffer : public text_buffer {
public:
    std::vector<std::string> handed;
    void close() { flush(); }

protected:
    void hand_on(std::vector<char>& bytes, std::size_t used) override { handed.emplace_back(bytes.data(), used); }
};

// Writes lines of values until more than `bytes` are written.
template <typename Buffer>
void write_lines(Buffer& out, std::size_t bytes) {
    std::vector<std::uint16_t> values;
    for (std::uint16_t v = 0; v < 700; ++v) values.push_back(static_cast<std::uint16_t>(v * 37));
    for (std::size_t line = 0; out.written() < static_cast<std::int64_t>(bytes); ++line) {
        out.write("name");
        out.put('\t');
        out.number(line);
        out.values_line(values.data(), 1 + line % values.size());
    }
}

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

TEST(TextBuffer, ValuesLinesAsTheReadsFileHasThem) {
    recording_buffer out;
    const std::vector<std::int16_t> quals{35, 0, 999, 1000, -1, 32767};
    out.values_line(quals.data(), quals.size());
    out.values_line(quals.data(), 0);
    const std::vector<std::uint16_t> flows{65535, 7};
    out.values_line(flows.data(), flows.size());
    out.close();
    ASSERT_EQ(out.handed.size(), 1u);
    EXPECT_EQ(out.handed[0], "35\t0\t999\t1000\t-1\t32767\n\n65535\t7\n");
}

TEST(BatchBuffer, HandsOverTheBuffersAPlainBufferWouldHandOn) {
    recording_buffer plain;
    write_lines(plain, 5 * text_buffer::default_size);
    plain.close();

    batch_buffer batches;
    std::vector<std::string> taken;
    std::thread writer([&] {
        text_batch b;
        while (true) {
            batches.next(b);
            taken.emplace_back(b.text.data(), b.used);
            if (b.last || b.error) return;
        }
    });
    write_lines(batches, 5 * text_buffer::default_size);
    batches.end(nullptr);
    writer.join();
    ASSERT_EQ(taken.size(), plain.handed.size());
    for (std::size_t i = 0; i < taken.size(); ++i) EXPECT_TRUE(taken[i] == plain.handed[i]) << "buffer " << i;
}

TEST(BatchBuffer, MarksStandInTheBufferTheyWereMadeIn) {
    batch_buffer batches;
    write_contig_line(batches, "C1", 2, 1);
    batches.mark_contig_start("C1", 2);
    batches.write("r\t1\n\n");
    batches.mark_contig_end();
    const std::string big(text_buffer::default_size - 30, 'q');
    batches.write(big);
    // 17 bytes left: ">C2\t" fits, a number (up to 24 bytes) does not.
    write_contig_line(batches, "C2", 0, 1);
    batches.mark_contig_start("C2", 0);
    batches.mark_contig_end();
    batches.end(nullptr);

    text_batch first;
    batches.next(first);
    ASSERT_EQ(first.marks.size(), 2u);
    EXPECT_TRUE(first.marks[0].contig_start);
    EXPECT_EQ(first.marks[0].name, "C1");
    EXPECT_EQ(first.marks[0].at, 8u);  // ">C1\t2\t1\n"
    EXPECT_EQ(first.marks[0].offset, 8);
    EXPECT_FALSE(first.marks[1].contig_start);
    EXPECT_EQ(first.marks[1].at, 13u);
    EXPECT_EQ(first.used, 13 + big.size() + 4);
    EXPECT_FALSE(first.last);
    text_batch second;
    batches.next(second);
    EXPECT_TRUE(second.last);
    ASSERT_EQ(second.marks.size(), 2u);
    EXPECT_EQ(second.marks[0].name, "C2");
    EXPECT_EQ(second.marks[0].at, 4u);
    EXPECT_EQ(second.marks[0].offset, static_cast<std::int64_t>(first.used) + 4);
    EXPECT_EQ(std::string(second.text.data(), second.used), "0\t1\n");
}

}  // namespace
}  // namespace pelkrin
