#pragma once
// The reader's reports of short reads and of the end of the file.
#include <cstddef>
#include <string>

namespace pelkrin {

// "Error ocurred while reading file NAME" on standard error, then
// "Only got N bytes while SIZE is need" on standard output.
void report_short_read(const std::string& file_name, std::size_t got, std::size_t block_size);
// "reach end of file while read more data" on standard error.
void report_end_of_file();

}  // namespace pelkrin
