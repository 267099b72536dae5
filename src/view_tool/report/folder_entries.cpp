#include "view_tool/report/folder_entries.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "view_tool/report/report_file_names.h"

namespace pelkrin {
namespace {

bool same_file(int a, int b, const std::string& name) {
    struct stat sa {};
    struct stat sb {};
    return ::fstatat(a, name.c_str(), &sa, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstatat(b, name.c_str(), &sb, AT_SYMLINK_NOFOLLOW) == 0 && sa.st_dev == sb.st_dev &&
           sa.st_ino == sb.st_ino;
}

bool is_folder(int fd, const std::string& name) {
    struct stat st {};
    return ::fstatat(fd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
}

}  // namespace

std::vector<std::string> folder_names(int fd) {
    std::vector<std::string> names;
    const int own = ::openat(fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own < 0) return names;
    DIR* dir = ::fdopendir(own);
    if (dir == nullptr) {
        ::close(own);
        return names;
    }
    while (const dirent* e = ::readdir(dir)) {
        const std::string name = e->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(dir);
    return names;
}

void link_other_entries(int from, int to) {
    for (const std::string& name : folder_names(from)) {
        if (is_report_file_name(name) || is_folder(from, name)) continue;
        ::linkat(from, name.c_str(), to, name.c_str(), 0);
    }
}

bool clear_other_entries(int fd, int into) {
    bool cleared = true;
    for (const std::string& name : folder_names(fd)) {
        if (is_report_file_name(name) && !is_folder(fd, name)) continue;
        if (into >= 0 && same_file(fd, into, name)) {
            cleared = ::unlinkat(fd, name.c_str(), 0) == 0 && cleared;
        } else {
            // Fails, leaving the entry, when `into` has one of that name.
            cleared = into >= 0 && ::renameat2(fd, name.c_str(), into, name.c_str(), RENAME_NOREPLACE) == 0 && cleared;
        }
    }
    return cleared;
}

void clear_old_folder(int fd, int into, int parent, const std::string& leaf) {
    for (const std::string& name : folder_names(fd)) {
        if (is_report_file_name(name)) ::unlinkat(fd, name.c_str(), 0);
    }
    clear_other_entries(fd, into);
    ::unlinkat(parent, leaf.c_str(), AT_REMOVEDIR);
}

}  // namespace pelkrin
