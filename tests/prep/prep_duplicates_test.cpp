// Read names in more than one record: within one file, or across two, named
// with both files; and one file given twice, by its name again or through
// another name or a link, named as such by check and refused by sff. Before,
// a name in two files was reported as "duplicate read names: 10 (the first: )"
// and the same file twice as "byte 240 is left out for example.sff byte 240".
#include <gtest/gtest.h>

#include <filesystem>

#include "files.h"
#include "folder_state.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string last_line(const std::string& text) {
    std::string t = text;
    while (!t.empty() && t.back() == '\n') t.pop_back();
    return t.substr(t.rfind('\n') + 1);
}

// greek.sff's first `shared` reads, then reads of new names.
sff_fixture sharing(std::size_t shared, std::size_t added) {
    sff_fixture f = fixture_of(read_file(data_file("greek.sff")));
    f.reads.resize(shared);
    for (std::size_t i = 0; i < added; ++i) {
        sff_fixture_read r = f.reads.front();
        r.name = "new" + std::to_string(i);
        f.reads.push_back(r);
    }
    return f;
}

TEST(PrepDuplicates, NamesAcrossFilesNameBothFiles) {
    const fs::path dir = scratch_dir();
    const std::string greek = read_file(data_file("greek.sff"));
    const sff_fixture original = fixture_of(greek);
    write_file(dir / "a.sff", greek);
    write_file(dir / "b.sff", build_sff(sharing(5, 3)).bytes);
    write_file(dir / "x.ace", ace_of_reads({{original.reads[0].name}}));
    const std::string first = original.reads[0].name;
    auto r = run_prep({"check", "x.ace", "a.sff", "b.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "SFF file a.sff\n")) << r.out;
    EXPECT_TRUE(has(r.out, "  problem: read names in both a.sff and b.sff: 5 (the first: " + first +
                               "); a merge keeps the records of b.sff\n"))
        << r.out;
    // Within each file every name is once.
    EXPECT_FALSE(has(r.out, "problem: duplicate read names")) << r.out;
    EXPECT_FALSE(has(r.out, "(the first: )")) << r.out;

    r = run_prep({"sff", "m.sff", "a.sff", "b.sff"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(has(r.err, "Pelkrin-prep: read " + first + " occurs again: a.sff byte ")) << r.err;
    EXPECT_TRUE(has(r.err, " is left out for b.sff byte ")) << r.err;
    r = run_prep({"check", "x.ace", "m.sff"}, dir);
    EXPECT_TRUE(has(r.out, "reads: 27 announced, 27 found\n")) << r.out;  // 24 + 3 new
}

TEST(PrepDuplicates, NamesWithinOneFile) {
    const fs::path dir = scratch_dir();
    sff_fixture f = sharing(6, 0);
    f.reads.push_back(f.reads[2]);
    f.reads.push_back(f.reads[4]);
    write_file(dir / "a.sff", build_sff(f).bytes);
    write_file(dir / "x.ace", ace_of_reads({{f.reads[0].name}}));
    const auto r = run_prep({"check", "x.ace", "a.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "  problem: duplicate read names: 2 (the first: " + f.reads[2].name + ")\n")) << r.out;
    EXPECT_FALSE(has(r.out, "read names in both")) << r.out;
}

// The second name of each pair leads to the file of the first.
struct twice_given {
    std::string kind;
    std::string first;
    std::string second;
};

TEST(PrepDuplicates, AFileGivenTwiceIsNamedAsSuch) {
    const fs::path dir = scratch_dir();
    write_file(dir / "a.sff", read_file(data_file("greek.sff")));
    write_file(dir / "x.ace", ace_of_reads({{"alpha"}}));
    fs::create_symlink("a.sff", dir / "link.sff");
    fs::create_hard_link(dir / "a.sff", dir / "hard.sff");
    fs::create_directory(dir / "sub");
    const std::vector<twice_given> cases = {
        {"the same name", "a.sff", "a.sff"},
        {"another name", "a.sff", "./sub/../a.sff"},
        {"a symbolic link", "a.sff", "link.sff"},
        {"a hard link", "hard.sff", "a.sff"},
    };
    for (const twice_given& c : cases) {
        SCOPED_TRACE(c.kind);
        auto r = run_prep({"check", "x.ace", c.first, c.second}, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_TRUE(has(r.out, "SFF file " + c.second + "\n  problem: the same file as " + c.first + ", given twice\n"))
            << r.out;
        EXPECT_EQ(last_line(r.out), "Pelkrin will not read this pair correctly as it stands: the SFF file " + c.second +
                                        " is " + c.first + " given again (give each file once).");
        EXPECT_FALSE(has(r.out, "duplicate read names: 24")) << r.out;

        const auto before = folder_state(dir);
        r = run_prep({"sff", "m.sff", c.first, c.second}, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, c.first == c.second ? "Pelkrin-prep: a.sff is given twice; give each file once\n"
                                             : "Pelkrin-prep: " + c.second + " and " + c.first +
                                                   " are the same file; give each file once\n");
        EXPECT_TRUE(folder_state(dir) == before);
    }
}

}  // namespace
}  // namespace pelkrin::test
