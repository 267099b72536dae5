#pragma once
// Moving the entries of a report folder that are not the report's, and
// removing a folder that no longer holds a report. A report's own files
// (report_file_names.h) are removed; nothing else is ever removed but a second
// name of a file that stays under its first.
#include <string>
#include <vector>

namespace pelkrin {

// The names in the folder open as `fd`, "." and ".." left out; none when it
// cannot be read.
std::vector<std::string> folder_names(int fd);

// Links every entry of the folder `from` that is neither a folder nor a file
// of the report into the folder `to`, under its own name. One that cannot be
// linked is left: clear_old_folder moves it later.
void link_other_entries(int from, int to);

// Every entry of the folder `fd` that is not a file of the report goes to
// the folder `into` (-1: none) under its name when `into` has none of that
// name; when `into` holds the same file under it (linked by
// link_other_entries), this name of it is removed; else it stays. True when
// none stays.
bool clear_other_entries(int fd, int into);

// Empties the folder `fd`, which no longer holds the report, and removes it
// (`leaf` in the folder `parent`): the report's files are removed, the
// others cleared as above (the folder stays when one stays). Never throws.
void clear_old_folder(int fd, int into, int parent, const std::string& leaf);

}  // namespace pelkrin
