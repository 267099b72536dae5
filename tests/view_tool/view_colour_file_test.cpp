// Pelkrin-view's colour files.
#include <gtest/gtest.h>

#include "files.h"
#include "view_tool/colour_file.h"

namespace pelkrin::test {
namespace {

colour_file_result load(std::string_view text) {
    const auto path = scratch_dir() / "colours.txt";
    write_file(path, text);
    return read_colour_file(path.string());
}

TEST(ViewColourFile, DefaultColours) {
    EXPECT_EQ(default_colours(), (colour_map{{'A', "green"}, {'C', "blue"}, {'G', "orange"}, {'T', "red"},
                                             {'N', "gray"}, {'*', "gray"}}));
}

TEST(ViewColourFile, LinesOfACharacterATabAndATextVerbatim) {
    const auto r = load("A\tred\n*\t\"#ccc\" style=x\n\nc\t  blue  \n");
    ASSERT_TRUE(r.colours) << r.error;
    EXPECT_EQ(*r.colours, (colour_map{{'A', "red"}, {'*', "\"#ccc\" style=x"}, {'c', "  blue  "}}));
}

TEST(ViewColourFile, LastLineWithoutLineEndAndCarriageReturns) {
    const auto r = load("A\tred\r\n\r\nT\tteal");
    ASSERT_TRUE(r.colours) << r.error;
    EXPECT_EQ(*r.colours, (colour_map{{'A', "red"}, {'T', "teal"}}));
}

TEST(ViewColourFile, TabAndEmptyColourAreAllowed) {
    const auto r = load("\t\tx\nG\t\n");
    ASSERT_TRUE(r.colours) << r.error;
    EXPECT_EQ(*r.colours, (colour_map{{'\t', "x"}, {'G', ""}}));
}

TEST(ViewColourFile, LaterLineReplacesAnEarlierOne) {
    const auto r = load("A\tred\nA\tblue\n");
    ASSERT_TRUE(r.colours);
    EXPECT_EQ(*r.colours, (colour_map{{'A', "blue"}}));
}

TEST(ViewColourFile, EmptyFileGivesNoColours) {
    const auto r = load("");
    ASSERT_TRUE(r.colours);
    EXPECT_TRUE(r.colours->empty());
}

TEST(ViewColourFile, BadLineIsNamedByNumber) {
    const auto path = (scratch_dir() / "colours.txt").string();
    for (const char* bad : {"A red", "AB\tred", "A", "Ared\t"}) {
        write_file(path, std::string("T\tred\n\n") + bad + "\nG\tgreen\n");
        const auto r = read_colour_file(path);
        EXPECT_FALSE(r.colours) << bad;
        EXPECT_EQ(r.error, "colour file " + path + " line 3: not a character, a tab and a colour") << bad;
    }
}

TEST(ViewColourFile, MissingFileOrFolderCannotBeRead) {
    const auto dir = scratch_dir();
    auto r = read_colour_file((dir / "none.txt").string());
    EXPECT_FALSE(r.colours);
    EXPECT_EQ(r.error, "can not read colour file " + (dir / "none.txt").string());
    r = read_colour_file(dir.string());
    EXPECT_FALSE(r.colours);
    EXPECT_EQ(r.error, "can not read colour file " + dir.string());
}

// /dev/zero would be read until memory runs out.
TEST(ViewColourFile, ADeviceIsNotRead) {
    const auto r = read_colour_file("/dev/zero");
    EXPECT_FALSE(r.colours);
    EXPECT_EQ(r.error, "can not read colour file /dev/zero");
}

}  // namespace
}  // namespace pelkrin::test
