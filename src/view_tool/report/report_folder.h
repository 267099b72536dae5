#pragma once
// The folder a report is written into, and how the report takes the place of
// an earlier one in it.
//
// The files are written into a folder beside DIR
// (".NAME.pelkrin-report-XXXXXX" in DIR's parent), which takes DIR's place
// once the report is whole: the two folders trade names in one step
// (renameat2 RENAME_EXCHANGE), so that DIR holds the earlier report or the
// new one, never part of each. The earlier report then stands in the folder
// beside DIR, and the next report is written over its files: writing over
// files is several times faster than making new ones (see write), and a
// report of a large assembly is thousands of files. Entries of DIR that are
// not the report's (report_file_names.h) stay in DIR: files are linked into
// the new folder before the trade, folders are moved over after it.
//
// A report that is not put in place (a failure, or a signal: interrupt_guard)
// leaves DIR as it was; the folder it was written into is removed, or, when
// it held an earlier report, kept for the next run. A folder that a killed
// run left beside DIR (no process holds its lock) is taken by the next run
// the same way; any more such folders are removed.
//
// Where no folder can be made beside DIR (its parent admits none) or DIR
// cannot trade places (it is the working folder or a mount point, or it
// admits no new file), the files are written into DIR itself, over the
// earlier report's, whose other files are removed when the report is put in
// place; a report that fails there leaves what it wrote.
#include <sys/types.h>

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "view_tool/report/interrupt_guard.h"

namespace pelkrin {

class report_folder {
public:
    // Makes the folder ready for a report; `name` is DIR as the user gave it
    // (a symbolic link to a folder is followed: the link stays a link). A
    // file of `inputs` found in the folder the report is written into is
    // never written over. Throws fatal_error with "Pelkrin-view: can not
    // create folder DIR: REASON" when DIR is no folder and cannot be made one.
    report_folder(const std::string& name, interrupt_guard& guard, const std::vector<std::string>& inputs = {});
    ~report_folder();
    report_folder(const report_folder&) = delete;
    report_folder& operator=(const report_folder&) = delete;

    // Writes one file of the report, whole; any thread may. Throws
    // fatal_error with "Pelkrin-view: can not write file DIR/FILE: REASON".
    void write(const std::string& file, std::string_view text);
    // Puts the report in place of the earlier one, as above. Once only.
    // Throws fatal_error as the constructor does when DIR cannot take the new
    // folder, or, written in place, with "Pelkrin-view: can not remove file
    // DIR/FILE: REASON" for a file of the earlier report.
    void put_in_place();

    // DIR/FILE as the messages name it.
    std::string shown(const std::string& file) const;

private:
    // Removes the new folder, unless it is in place.
    void remove_new_folder() noexcept;
    // The files of an earlier report that this one did not write.
    void remove_unwritten();

    interrupt_guard& guard_;
    std::string name_;     // DIR as given
    std::string path_;     // DIR's own path: a link to it followed, no slash at the end
    std::string parent_;   // the folder that holds it
    std::string staging_;  // the new folder's path; empty when written in place
    int fd_ = -1;          // where the files go: the new folder, or DIR
    bool in_place_ = false;
    bool placed_ = false;
    bool kept_ = false;  // the new folder is one an earlier run left
    std::mutex written_mutex_;
    std::vector<std::string> written_;
    std::vector<std::pair<dev_t, ino_t>> inputs_;
};

}  // namespace pelkrin
