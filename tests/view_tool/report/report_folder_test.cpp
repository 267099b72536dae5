// The names of a report's files, and what becomes of the other entries of a
// folder that no longer holds the report.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "files.h"
#include "folder_state.h"
#include "view_tool/report/folder_entries.h"
#include "view_tool/report/report_file_names.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

TEST(ReportFileNames, TheReportsOwnNamesAndNoOthers) {
    for (const char* name : {"index.html", "pelkrin-report.css", "pelkrin-report.js", "contig-1.html", "contig-1.js",
                             "contig-20.html", "contig-3-flowgrams-0.js", "contig-3-flowgrams-12.js"}) {
        EXPECT_TRUE(is_report_file_name(name)) << name;
    }
    for (const char* name : {"", "index.htm", "contig-.html", "contig-0.html", "contig-01.html", "contig-1.htm",
                             "contig-1.html.orig", "contig-x.html", "contig-1-flowgrams-.js", "contig-1-flowgrams-01.js",
                             "contig-1-flowgrams-0.html", "under-test-contig-1.html", "asm.ace", ".contig-1.html"}) {
        EXPECT_FALSE(is_report_file_name(name)) << name;
    }
}

int open_folder(const fs::path& path) { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }

// The report's files go; a second name of a file the report folder holds
// goes; anything else moves to the report folder, unless that holds
// another entry of its name: then it stays, and so does the folder.
TEST(FolderEntries, AnOldFolderKeepsNothingButWhatCannotMove) {
    const fs::path dir = scratch_dir();
    fs::create_directories(dir / "old" / "notes");
    fs::create_directories(dir / "report");
    for (const char* name : {"index.html", "contig-1.html", "contig-1-flowgrams-0.js"}) write_file(dir / "old" / name, "page\n");
    write_file(dir / "old" / "notes" / "a.txt", "a\n");
    write_file(dir / "report" / "asm.ace", "ace\n");
    ASSERT_EQ(::link((dir / "report" / "asm.ace").c_str(), (dir / "old" / "asm.ace").c_str()), 0);
    write_file(dir / "old" / "late.txt", "written during the run\n");
    write_file(dir / "old" / "twice.txt", "the old one\n");
    write_file(dir / "report" / "twice.txt", "the new one\n");

    const int old_fd = open_folder(dir / "old");
    const int report_fd = open_folder(dir / "report");
    const int parent_fd = open_folder(dir);
    ASSERT_GE(old_fd, 0);
    EXPECT_FALSE(clear_other_entries(old_fd, report_fd));  // twice.txt stays
    EXPECT_TRUE(fs::exists(dir / "old" / "index.html"));
    clear_old_folder(old_fd, report_fd, parent_fd, "old");
    ::close(old_fd);
    ::close(report_fd);
    ::close(parent_fd);

    EXPECT_EQ(folder_state(dir), (std::map<std::string, std::string>{
                                     {"old", "directory"},
                                     {"old/twice.txt", "the old one\n"},
                                     {"report", "directory"},
                                     {"report/asm.ace", "ace\n"},
                                     {"report/late.txt", "written during the run\n"},
                                     {"report/notes", "directory"},
                                     {"report/notes/a.txt", "a\n"},
                                     {"report/twice.txt", "the new one\n"},
                                 }));
    struct stat st {};
    ASSERT_EQ(::stat((dir / "report" / "asm.ace").c_str(), &st), 0);
    EXPECT_EQ(st.st_nlink, 1u);

    // Emptied, the folder goes.
    fs::remove(dir / "old" / "twice.txt");
    const int again = open_folder(dir / "old");
    const int parent = open_folder(dir);
    clear_old_folder(again, -1, parent, "old");
    ::close(again);
    ::close(parent);
    EXPECT_FALSE(fs::exists(dir / "old"));
}

// Every entry but folders and the report's files gets a second name in the
// new folder.
TEST(FolderEntries, OtherFilesAreLinkedIntoTheNewFolder) {
    const fs::path dir = scratch_dir();
    fs::create_directories(dir / "report" / "notes");
    fs::create_directories(dir / "new");
    write_file(dir / "report" / "index.html", "old index\n");
    write_file(dir / "report" / "asm.ace", "ace\n");
    fs::create_symlink("asm.ace", dir / "report" / "link.ace");
    const int from = open_folder(dir / "report");
    const int to = open_folder(dir / "new");
    link_other_entries(from, to);
    ::close(from);
    ::close(to);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir / "new")) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"asm.ace", "link.ace"}));
    EXPECT_EQ(read_file(dir / "new" / "asm.ace"), "ace\n");
    EXPECT_TRUE(fs::is_symlink(dir / "new" / "link.ace"));
    EXPECT_EQ(fs::read_symlink(dir / "new" / "link.ace"), "asm.ace");
}

}  // namespace
}  // namespace pelkrin::test
