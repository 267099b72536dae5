// The one way the programs open an input file: what each way of reading
// takes, what it refuses and in which words, and that nothing waits on a
// FIFO that has no writer.
#include "common/input_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "common/fatal_error.h"
#include "files.h"

namespace pelkrin {
namespace {

namespace fs = std::filesystem;

constexpr input_reading both[] = {input_reading::by_position, input_reading::front_to_back};

TEST(InputFile, ARegularFileOpensEitherWayWithItsLength) {
    const fs::path dir = test::scratch_dir();
    test::write_file(dir / "a.txt", "hello");
    for (input_reading reading : both) {
        input_file f;
        ASSERT_TRUE(f.open((dir / "a.txt").string(), reading)) << f.problem();
        EXPECT_TRUE(f.regular());
        EXPECT_EQ(f.size(), 5);
        EXPECT_TRUE(f.problem().empty());
        std::vector<std::uint8_t> bytes;
        ASSERT_TRUE(f.read_to_end(bytes));
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "hello");
    }
}

TEST(InputFile, AMissingFileGivesTheSystemsReason) {
    const fs::path dir = test::scratch_dir();
    input_file f;
    EXPECT_FALSE(f.open((dir / "none").string(), input_reading::front_to_back));
    EXPECT_FALSE(f.is_open());
    EXPECT_EQ(f.problem(), "cannot open: No such file or directory");
    EXPECT_EQ(f.error(), ENOENT);
}

TEST(InputFile, AFolderIsRefusedEitherWayButStaysOpen) {
    const fs::path dir = test::scratch_dir();
    for (input_reading reading : both) {
        input_file f;
        EXPECT_FALSE(f.open(dir.string(), reading));
        EXPECT_EQ(f.problem(), "cannot read: Is a directory");
        EXPECT_TRUE(f.is_open()) << "the caller may tell of it in its own words";
    }
}

TEST(InputFile, ADeviceIsRefusedEitherWay) {
    for (const char* device : {"/dev/zero", "/dev/null"}) {
        for (input_reading reading : both) {
            input_file f;
            EXPECT_FALSE(f.open(device, reading)) << device;
            EXPECT_EQ(f.problem(), "is a device, not a file") << device;
        }
    }
}

// A FIFO that nobody writes: opening it to read by position must neither
// wait nor succeed.
TEST(InputFile, AFifoIsRefusedByPositionAtOnce) {
    const fs::path fifo = test::scratch_dir() / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    auto opened = std::async(std::launch::async, [&] {
        input_file f;
        const bool ok = f.open(fifo.string(), input_reading::by_position);
        return std::make_pair(ok, f.problem());
    });
    ASSERT_EQ(opened.wait_for(std::chrono::seconds(10)), std::future_status::ready) << "opening waited for a writer";
    const auto [ok, problem] = opened.get();
    EXPECT_FALSE(ok);
    EXPECT_EQ(problem, "is a pipe, not a regular file: it cannot be read by position");
}

// Read from front to back, a FIFO is read as any reader of a FIFO reads it:
// what its writer writes, to the end.
TEST(InputFile, AFifoIsReadFrontToBack) {
    const fs::path fifo = test::scratch_dir() / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::thread writer([&] {
        std::ofstream out(fifo, std::ios::binary);
        out << std::string(3 << 20, 'x') << "end";
    });
    input_file f;
    const bool ok = f.open(fifo.string(), input_reading::front_to_back);
    std::vector<std::uint8_t> bytes;
    const bool read = ok && f.read_to_end(bytes);
    writer.join();
    ASSERT_TRUE(ok) << f.problem();
    ASSERT_TRUE(read) << f.problem();
    EXPECT_FALSE(f.regular());
    EXPECT_EQ(f.size(), -1);
    ASSERT_EQ(bytes.size(), (3u << 20) + 3);
    EXPECT_EQ(std::string(bytes.end() - 3, bytes.end()), "end");
}

TEST(InputFile, OpenInputThrowsTheProgramsMessage) {
    const fs::path dir = test::scratch_dir();
    try {
        open_input(dir.string(), input_reading::front_to_back, "Pelkrin-prep");
        FAIL() << "a folder was taken";
    } catch (const fatal_error& e) {
        EXPECT_EQ(e.status(), 1);
        EXPECT_EQ(std::string(e.message()), "Pelkrin-prep: " + dir.string() + ": cannot read: Is a directory\n");
    }
    test::write_file(dir / "f", "x");
    EXPECT_EQ(open_input((dir / "f").string(), input_reading::by_position, "Pelkrin-view").size(), 1);
}

TEST(InputFile, MovingHandsTheFileOn) {
    const fs::path dir = test::scratch_dir();
    test::write_file(dir / "f", "abc");
    input_file a;
    ASSERT_TRUE(a.open((dir / "f").string(), input_reading::by_position));
    const int fd = a.descriptor();
    input_file b = std::move(a);
    EXPECT_FALSE(a.is_open());  // NOLINT(bugprone-use-after-move): moved from is closed
    EXPECT_EQ(b.descriptor(), fd);
    EXPECT_EQ(b.size(), 3);
    const int taken = b.release();
    EXPECT_EQ(taken, fd);
    EXPECT_FALSE(b.is_open());
    EXPECT_EQ(::close(taken), 0) << "release hands the descriptor over, open";
}

}  // namespace
}  // namespace pelkrin
