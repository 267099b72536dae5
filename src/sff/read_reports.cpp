#include "sff/read_reports.h"

#include <iostream>

namespace pelkrin {

void report_short_read(const std::string& file_name, std::size_t got, std::size_t block_size) {
    std::cerr << "Error ocurred while reading file " << file_name << std::endl;
    std::cout << "Only got " << got << " bytes while " << block_size << " is need" << std::endl;
}

void report_end_of_file() { std::cerr << "reach end of file while read more data" << std::endl; }

}  // namespace pelkrin
