#pragma once
// One assembled contig: what the ACE reader fills, plus the structures that
// the view operations derive from it on first use.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ace/read_record.h"

namespace pelkrin {

struct contig {
    std::string name;
    int32_t base_num = 0;
    int32_t read_num = 0;
    int32_t seg_num = 0;
    int16_t max_read_len = 0;
    int16_t min_read_len = 5000;
    double avg_read_len = 0.0;
    std::vector<char> consensus;  // padded, exactly as in the file
    // The reader only ever sets this to 1, so it keeps whatever it held for a
    // complemented contig; start it at 0.
    int32_t uncomplemented = 0;
    std::map<std::string, READ> reads;

    // Derived on demand by the view operations.
    std::multimap<int32_t, std::string> pos_map;
    std::vector<std::map<int32_t, std::string>> print_map;
    std::vector<std::map<char, int32_t>> flow_index_map;
    std::vector<char> flow_consensus;

    friend bool operator==(const contig&, const contig&) = default;
};

}  // namespace pelkrin
