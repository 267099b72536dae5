#include "view_tool/report/report_folder.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "common/fatal_error.h"
#include "view_tool/report/folder_entries.h"
#include "view_tool/report/report_file_names.h"

namespace pelkrin {
namespace {

constexpr const char* staging_mark = ".pelkrin-report-";

[[noreturn]] void cannot(const std::string& what, const std::string& path, int error) {
    throw fatal_error(1, "Pelkrin-view: can not " + what + " " + path + ": " + std::strerror(error) + "\n");
}

// The name without the slashes at its end ("/" stays).
std::string without_end_slashes(std::string name) {
    while (name.size() > 1 && name.back() == '/') name.pop_back();
    return name;
}

std::string leaf_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string parent_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool same_inode(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

// DIR cannot trade places with a new folder: the working folder (whose
// name would then lead elsewhere than the shell stands), a mount point, or
// a name that is no name of its own.
bool cannot_move(const std::string& path, const struct stat& st) {
    const std::string leaf = leaf_of(path);
    if (leaf.empty() || leaf == "." || leaf == "..") return true;
    struct stat here {};
    if (::stat(".", &here) == 0 && same_inode(here, st)) return true;
    struct stat parent {};
    return ::stat(parent_of(path).c_str(), &parent) != 0 || parent.st_dev != st.st_dev;
}

mode_t creation_mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0777 & ~mask;
}

// The folder beside DIR that the report is written into: one left there by
// an earlier report (the report it replaced) or by a run that was killed, no
// process holding its lock, whose files the report writes over (see write);
// else a new one. Any other such folder is removed. Returns the folder's path
// and sets `fd` (its lock taken), or returns an empty path.
std::string take_folder_left(const std::string& parent, const std::string& leaf, int dir_fd, int& fd) {
    const int parent_fd = ::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parent_fd < 0) return {};
    const std::string prefix = "." + leaf + staging_mark;
    std::string taken;
    for (const std::string& name : folder_names(parent_fd)) {
        if (name.size() != prefix.size() + 6 || name.compare(0, prefix.size(), prefix) != 0) continue;
        const int left = ::openat(parent_fd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (left < 0) continue;
        if (::flock(left, LOCK_EX | LOCK_NB) != 0) {
            ::close(left);  // another run's
        } else if (taken.empty() && clear_other_entries(left, dir_fd)) {
            taken = (parent == "/" ? "" : parent) + "/" + name;
            fd = left;
        } else {
            clear_old_folder(left, dir_fd, parent_fd, name);
            ::close(left);
        }
    }
    ::close(parent_fd);
    return taken;
}

}  // namespace

report_folder::report_folder(const std::string& name, interrupt_guard& guard, const std::vector<std::string>& inputs)
    : guard_(guard), name_(name), path_(without_end_slashes(name)) {
    for (const std::string& input : inputs) {
        struct stat in {};
        if (::stat(input.c_str(), &in) == 0) inputs_.emplace_back(in.st_dev, in.st_ino);
    }
    struct stat st {};
    const bool exists = ::stat(path_.c_str(), &st) == 0;
    if (!exists && errno != ENOENT) cannot("create folder", name_, errno);
    if (exists && !S_ISDIR(st.st_mode)) cannot("create folder", name_, ENOTDIR);
    struct stat own {};
    if (exists && ::lstat(path_.c_str(), &own) == 0 && S_ISLNK(own.st_mode)) {
        // The folder the link names takes the new report; the link stays.
        char real[PATH_MAX];
        if (::realpath(path_.c_str(), real) == nullptr) cannot("create folder", name_, errno);
        path_ = real;
    }
    parent_ = parent_of(path_);
    if (!exists) {
        std::error_code error;
        std::filesystem::create_directories(parent_, error);
        if (error) cannot("create folder", name_, error.value());
    }
    in_place_ = exists && (cannot_move(path_, st) || ::access(path_.c_str(), W_OK) != 0);
    if (!in_place_) {
        const int dir_fd = exists ? ::open(path_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC) : -1;
        staging_ = take_folder_left(parent_, leaf_of(path_), dir_fd, fd_);
        if (dir_fd >= 0) ::close(dir_fd);
        kept_ = !staging_.empty();
    }
    if (!in_place_ && staging_.empty()) {
        std::string staging = (parent_ == "/" ? "" : parent_) + "/." + leaf_of(path_) + staging_mark + "XXXXXX";
        if (::mkdtemp(staging.data()) != nullptr) {
            staging_ = staging;
            fd_ = ::open(staging_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (fd_ < 0) {
                const int error = errno;
                ::rmdir(staging_.c_str());
                cannot("create folder", name_, error);
            }
            // Held until the program ends: while it is, no other run takes the folder.
            ::flock(fd_, LOCK_EX);
        } else if (!exists) {
            cannot("create folder", name_, errno);
        } else {
            in_place_ = true;  // the parent admits no new folder
        }
    }
    if (in_place_) {
        fd_ = ::open(path_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (fd_ < 0) cannot("create folder", name_, errno);
        return;
    }
    ::fchmod(fd_, exists ? (st.st_mode & 07777) : creation_mode());
    guard_.set_cleanup([this] { remove_new_folder(); });
}

report_folder::~report_folder() {
    {
        auto held = guard_.hold();
        if (!placed_) remove_new_folder();
    }
    guard_.set_cleanup({});
    if (fd_ >= 0) ::close(fd_);
}

std::string report_folder::shown(const std::string& file) const { return (std::filesystem::path(name_) / file).string(); }

void report_folder::write(const std::string& file, std::string_view text) {
    // A file of an earlier report (in place) is written over and then cut to
    // its new length, neither emptied first nor removed: ext4 sends a file
    // that was emptied and written again to the disk as it is closed, and
    // creating thousands of files just after removing as many makes it
    // search long for free inodes. One that is not a plain file of its own (a
    // link, a second name of another file, a FIFO without a reader, an input)
    // is replaced instead: what it leads to stays as it was.
    constexpr int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    int fd = ::openat(fd_, file.c_str(), flags, 0666);
    struct stat st {};
    bool own = fd >= 0 && ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_nlink == 1;
    for (const auto& [dev, ino] : inputs_) own = own && !(st.st_dev == dev && st.st_ino == ino);
    if (!own && (fd >= 0 || errno == ELOOP || errno == ENXIO)) {
        if (fd >= 0) ::close(fd);
        fd = ::unlinkat(fd_, file.c_str(), 0) == 0 ? ::openat(fd_, file.c_str(), flags | O_EXCL, 0666) : -1;
        st.st_size = 0;
    }
    if (fd < 0) cannot("write file", shown(file), errno);
    int error = 0;
    for (std::size_t done = 0; error == 0 && done < text.size();) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n > 0) done += static_cast<std::size_t>(n);
        else if (n == 0) error = EIO;
        else if (errno != EINTR) error = errno;
    }
    if (error == 0 && st.st_size > static_cast<off_t>(text.size()) &&
        ::ftruncate(fd, static_cast<off_t>(text.size())) != 0) {
        error = errno;
    }
    if (::close(fd) != 0 && error == 0) error = errno;
    if (error != 0) cannot("write file", shown(file), error);
    std::lock_guard lock(written_mutex_);
    written_.push_back(file);
}

void report_folder::put_in_place() {
    auto held = guard_.hold();
    remove_unwritten();
    if (in_place_) {
        placed_ = true;
        return;
    }
    int dir_fd = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir_fd >= 0) link_other_entries(dir_fd, fd_);
    // The two folders trade names at once; a file system that cannot do
    // that (EINVAL) gets two renamings, with a moment between them when DIR
    // is missing.
    std::string old = staging_;
    int done = ::renameat2(AT_FDCWD, staging_.c_str(), AT_FDCWD, path_.c_str(), dir_fd >= 0 ? RENAME_EXCHANGE : RENAME_NOREPLACE);
    if (done != 0 && errno == EINVAL && dir_fd >= 0) {
        old = staging_ + "-old";
        done = ::rename(path_.c_str(), old.c_str());
        if (done == 0 && (done = ::rename(staging_.c_str(), path_.c_str())) != 0) {
            const int error = errno;
            ::rename(old.c_str(), path_.c_str());
            errno = error;
        }
    }
    if (done != 0) {
        const int error = errno;
        if (dir_fd >= 0) ::close(dir_fd);
        cannot("create folder", name_, error);
    }
    placed_ = true;
    if (dir_fd < 0) return;  // no earlier folder
    // The earlier folder now stands at `old`, and `fd_` is DIR. Its files are
    // kept there for the next report to write over: writing over files is
    // much faster than making new ones (see write). What is not the
    // report's goes over to DIR.
    const int old_fd = ::open(old.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (old_fd >= 0) clear_other_entries(old_fd, fd_);
    if (old_fd >= 0) ::close(old_fd);
    ::close(dir_fd);
}

void report_folder::remove_new_folder() noexcept {
    if (in_place_ || staging_.empty() || placed_) return;
    const int dir_fd = ::open(path_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (kept_) {
        // An earlier report's folder: kept for the next run, as it was found.
        clear_other_entries(fd_, dir_fd);
        if (dir_fd >= 0) ::close(dir_fd);
        return;
    }
    const int parent_fd = ::open(parent_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    // Workers may still be writing into it (a signal): cleared again until
    // it is gone, which ends their writing.
    for (int round = 0; round < 100 && parent_fd >= 0; ++round) {
        clear_old_folder(fd_, dir_fd, parent_fd, leaf_of(staging_));
        struct stat st {};
        if (::fstatat(parent_fd, leaf_of(staging_).c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) break;
    }
    if (dir_fd >= 0) ::close(dir_fd);
    if (parent_fd >= 0) ::close(parent_fd);
}

void report_folder::remove_unwritten() {
    std::sort(written_.begin(), written_.end());
    for (const std::string& name : folder_names(fd_)) {
        if (!is_report_file_name(name) || std::binary_search(written_.begin(), written_.end(), name)) continue;
        if (::unlinkat(fd_, name.c_str(), 0) != 0) cannot("remove file", shown(name), errno);
    }
}

}  // namespace pelkrin
