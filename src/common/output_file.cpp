#include "common/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "common/temporary_files.h"

namespace pelkrin {
namespace {

// Bytes written between two requests to start writing them to the disk.
constexpr std::int64_t send_to_disk_every = std::int64_t{8} << 20;

// The mode a file created by fopen would get.
mode_t creation_mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

std::string folder_of(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The file a chain of symbolic links ends at, or `path` when it is no link.
// A link whose target is absent still names where the file goes.
std::string link_target(const std::string& path) {
    std::string at = path;
    for (int hops = 0; hops < 40; ++hops) {
        struct stat st {};
        if (::lstat(at.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return at;
        std::string target(PATH_MAX, '\0');
        const ssize_t n = ::readlink(at.c_str(), target.data(), target.size());
        if (n <= 0) return at;
        target.resize(static_cast<std::size_t>(n));
        at = target.front() == '/' ? target : folder_of(at) + "/" + target;
    }
    return at;
}

}  // namespace

output_file::output_file(std::string path) : name_(std::move(path)) {
    final_path_ = link_target(name_);
    struct stat st {};
    const bool exists = ::stat(final_path_.c_str(), &st) == 0;
    if (exists && !S_ISREG(st.st_mode)) {
        open_in_place();  // a device or a FIFO: written as it is
        return;
    }
    // The last part of the name, hidden, with a unique ending.
    const auto slash = final_path_.rfind('/');
    const std::string leaf = slash == std::string::npos ? final_path_ : final_path_.substr(slash + 1);
    std::string temp = folder_of(final_path_) + "/." + leaf + ".XXXXXX";
    const int fd = ::mkostemp(temp.data(), O_CLOEXEC);
    if (fd < 0) {
        open_in_place();  // a folder that admits no new file: the file itself may still be writable
        return;
    }
    // As the file would have been: its own mode when it exists, else a new file's.
    ::fchmod(fd, exists ? (st.st_mode & 07777) : creation_mode());
    file_ = ::fdopen(fd, "w");
    if (file_ == nullptr) {
        ::close(fd);
        ::unlink(temp.c_str());
        return;
    }
    temp_path_ = temp;
    register_temporary_file(temp_path_);
    std::setvbuf(file_, nullptr, _IONBF, 0);  // this class's buffer is the only one
    seekable_ = true;
}

bool output_file::open_in_place() {
    file_ = std::fopen(name_.c_str(), "w");
    if (file_ == nullptr) {
        error_ = errno;
        return false;
    }
    std::setvbuf(file_, nullptr, _IONBF, 0);
    struct stat st {};
    // Positions are only meaningful for a file that can seek (not a pipe).
    seekable_ = ::fstat(::fileno(file_), &st) == 0 && S_ISREG(st.st_mode);
    return true;
}

bool output_file::same_file_as(const std::string& path) const {
    struct stat mine {};
    struct stat other {};
    return ::stat(final_path_.c_str(), &mine) == 0 && ::stat(path.c_str(), &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

output_file::~output_file() { finish(); }

void output_file::hand_on(std::vector<char>& bytes, std::size_t used) { write_handed(bytes.data(), used); }

void output_file::write_handed(const char* bytes, std::size_t n) {
    if (n == 0 || file_ == nullptr || write_failed_) return;
    if (std::fwrite(bytes, 1, n, file_) != n) {
        fail(errno);
        return;
    }
    written_ += static_cast<std::int64_t>(n);
    if (send_early_ && seekable_ && written_ - sent_to_disk_ >= send_to_disk_every) send_to_disk();
}

// The disk takes what has been written as it comes, rather than all of it when
// the file is put in place (the file system writes a file that replaces
// another before the renaming ends). The pages sent one step before are on the
// disk by now and are let go: this process never reads them back, and pages
// let go as they are written are used again for the next ones, where pages
// kept would push the inputs out of the page cache and make every new page
// come from memory the system has not touched lately. Pages still being
// written are kept, so nothing here waits for the disk.
void output_file::send_to_disk() {
    const int fd = ::fileno(file_);
    ::sync_file_range(fd, sent_to_disk_, written_ - sent_to_disk_, SYNC_FILE_RANGE_WRITE);
    if (sent_to_disk_ > let_go_) {
        ::posix_fadvise(fd, let_go_, sent_to_disk_ - let_go_, POSIX_FADV_DONTNEED);
        let_go_ = sent_to_disk_;
    }
    sent_to_disk_ = written_;
}

void output_file::fail(int error) {
    if (!write_failed_) error_ = error;
    write_failed_ = true;
}

std::string output_file::failure_reason() const { return error_ == 0 ? std::string() : std::strerror(error_); }

std::int64_t output_file::position_at(std::int64_t offset) const {
    if (write_failed_ || !seekable_ || file_ == nullptr) return -1;
    return offset;
}

bool output_file::finish_writing() {
    if (file_ != nullptr) {
        flush();
        if (std::fclose(file_) != 0) fail(errno);
        file_ = nullptr;
        closed_ = true;
    }
    return closed_ && !write_failed_;
}

bool output_file::finish() {
    if (finished_) return !write_failed_;
    finished_ = true;
    // A file cut short by a failed write is worth less than the one it would
    // replace: it goes, and the file of the name stays as it was.
    if (!finish_writing()) {
        remove_temporary();
        return false;
    }
    if (!temp_path_.empty()) {
        if (std::rename(temp_path_.c_str(), final_path_.c_str()) != 0) {
            fail(errno);
            ::unlink(temp_path_.c_str());
        }
        unregister_temporary_file(temp_path_);
        temp_path_.clear();
    }
    return !write_failed_;
}

std::uint64_t output_file::copy_range(int fd, std::int64_t offset, std::uint64_t n) {
    flush();
    if (file_ == nullptr || write_failed_) return 0;
    loff_t from = offset;
    std::uint64_t copied = 0;
    while (copied < n) {
        const ssize_t got = ::copy_file_range(fd, &from, ::fileno(file_), nullptr, n - copied, 0);
        if (got <= 0) break;  // not between these files, or the input ended: the caller writes the rest
        copied += static_cast<std::uint64_t>(got);
    }
    written_ += static_cast<std::int64_t>(copied);
    return copied;
}

void output_file::discard() {
    if (finished_) return;
    finished_ = true;
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
    remove_temporary();
}

void output_file::remove_temporary() {
    if (temp_path_.empty()) return;
    ::unlink(temp_path_.c_str());
    unregister_temporary_file(temp_path_);
    temp_path_.clear();
}

}  // namespace pelkrin
