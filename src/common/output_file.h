#pragma once
// A text output file written through a large buffer (text_buffer.h), or
// from buffers filled elsewhere.
//
// A file that is absent or regular is written under a temporary name in its
// folder and put in place of its name by finish(), which the destructor calls
// too (so a run that ends with an error in its inputs still leaves what it
// wrote). A write that fails, a run that discards the file, and a run killed
// by a signal remove the temporary file and leave the previous file untouched
// (see temporary_files.h). A symbolic link is followed: the file it
// names is replaced and the link stays a link. Any other kind of file (a
// device, a FIFO), or a file whose folder admits no new file, is written in
// place, emptied on opening.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "text_buffer.h"

namespace pelkrin {

class output_file : public text_buffer {
public:
    // Opens the file as described above.
    explicit output_file(std::string path);
    ~output_file() override;

    // The name it was opened by.
    const std::string& name() const { return name_; }
    // True when the file could not be opened.
    bool failed_to_open() const { return file_ == nullptr && !finished_ && !closed_; }
    // True once a write to the file has failed; what is written after that is dropped.
    bool write_failed() const { return write_failed_; }
    // Why the file could not be opened, or why the first write, close or
    // renaming that failed did, in the system's words ("No space left on
    // device", "File too large"); empty when nothing failed.
    std::string failure_reason() const;
    // True when `path` names the file this one will stand at.
    bool same_file_as(const std::string& path) const;

    // Bytes written so far, counted from the start of the file; -1 once a write
    // has failed or when the file cannot report positions (a pipe, a device).
    std::int64_t tellp() const { return position_at(written()); }
    // What tellp() gives when `offset` bytes have been written.
    std::int64_t position_at(std::int64_t offset) const;
    // Writes `n` bytes that another text_buffer handed on, as this file's own
    // buffer going to the file would be (this one's buffer must be empty).
    void write_handed(const char* bytes, std::size_t n);
    // Writes what is buffered, then `n` bytes straight from `bytes`: for large
    // pieces that are in memory already, which copying into the buffer would only slow.
    void write_through(const char* bytes, std::size_t n) {
        flush();
        write_handed(bytes, n);
    }
    // Writes what is buffered, then copies `n` bytes of the file open as `fd`,
    // from `offset` on, to this one inside the kernel (copy_file_range), with
    // no pass through this process's memory. Returns how many bytes were
    // copied: fewer when the kernel cannot copy between the two files, and the
    // caller writes the rest.
    std::uint64_t copy_range(int fd, std::int64_t offset, std::uint64_t n);
    // Leaves sending the file to the disk to the system, rather than asking
    // for it every 8 MB as the file is written (see write_handed).
    void send_to_disk_when_the_system_does() { send_early_ = false; }
    // Writes what is buffered and closes the file, leaving it under its
    // temporary name: false when any write or the close failed. For a program
    // that writes several files and puts them in place only when all of them
    // are whole. Nothing can be written after it.
    bool finish_writing();
    // Finishes writing and puts the file in place of its name. False when any
    // write, the close or the renaming failed: the file written is then
    // removed, and the file of the name stays as it was. Once only.
    bool finish();
    // Closes the file and removes what was written instead of putting it in
    // place: the file of the name stays as it was. Once only, instead of finish().
    void discard();

protected:
    void hand_on(std::vector<char>& bytes, std::size_t used) override;

private:
    // Opens `name_` in place, emptying it; false when it cannot.
    bool open_in_place();
    // Starts writing what was written since the last call to the disk.
    void send_to_disk();
    // Removes the temporary file, if there is one.
    void remove_temporary();
    // Marks the file failed, keeping the first error's number.
    void fail(int error);

    std::string name_;
    std::string final_path_;  // where the temporary file goes at the end: the name, or the file a link names
    std::string temp_path_;   // empty when written in place
    std::FILE* file_ = nullptr;
    bool seekable_ = false;
    std::int64_t written_ = 0;       // bytes that reached the file
    std::int64_t sent_to_disk_ = 0;  // the file's first bytes the disk was asked to take
    std::int64_t let_go_ = 0;        // the file's first bytes whose pages were let go
    bool write_failed_ = false;
    int error_ = 0;  // the system's error number of the first failure, opening included
    bool send_early_ = true;
    bool closed_ = false;    // by finish_writing
    bool finished_ = false;  // by finish or discard
};

}  // namespace pelkrin
