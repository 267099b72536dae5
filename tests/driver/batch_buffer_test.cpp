// A batch buffer hands another thread the buffers that a plain text buffer
// would hand on, with its marks.
#include "driver/batch_buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "reads_format/reads_writer.h"
#include "text_buffer_lines.h"

namespace pelkrin {
namespace {

using test::recording_buffer;
using test::write_lines;

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
