#pragma once
// The display rows that contig::create_print_map packs, with every read given
// by its number among the contig's reads in name order rather than by name:
// for a caller that needs the rows once and the contig's maps not at all.
#include <cstdint>
#include <vector>

#include "../ace/contig.h"

namespace pelkrin {

struct row_read {
    int32_t pos = 0;   // padded start
    uint32_t read = 0; // the read's number in name order, from 0

    friend bool operator==(const row_read&, const row_read&) = default;
};

// Rows as print_map would hold them for the contig as it is (its position map
// built afresh), each in ascending start. The contig is left as it is.
std::vector<std::vector<row_read>> display_rows(const contig& c);

}  // namespace pelkrin
