#pragma once
// Output files that other code writes by name (a library that opens its
// files itself), each under a temporary name in the folder of its final
// name, put in place together once all are complete. Until then a signal
// ending the program removes them (temporary_files.h), and so does the
// destructor: a run that fails leaves the files of an earlier run as they were.
#include <string>
#include <vector>

namespace pelkrin {

class staged_files {
public:
    staged_files() = default;
    ~staged_files();
    staged_files(const staged_files&) = delete;
    staged_files& operator=(const staged_files&) = delete;

    // A new, empty file beside `final_path` (".LEAF.XXXXXX"), with the mode a
    // new file gets; its name. Throws fatal_error (status 1) with
    // "PROGRAM: can not create file FINAL_PATH: REASON" when it cannot be made.
    std::string stage(const std::string& final_path, const std::string& program);
    // Renames every staged file over its final name, in the order staged.
    // Throws fatal_error as stage does ("can not write file") when a renaming
    // fails; the files not yet renamed are removed.
    void put_in_place(const std::string& program);
    // Removes every staged file not yet put in place.
    void discard();

private:
    struct staged {
        std::string temporary;
        std::string final_path;
    };
    std::vector<staged> files_;
};

}  // namespace pelkrin
