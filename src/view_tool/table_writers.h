#pragma once
// The four table modes of Pelkrin-view: tab-separated lines, each ended by a
// line feed.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ace/contig.h"

namespace pelkrin {

std::string flow_table_text(const std::vector<std::vector<int16_t>>& flows,
                            const std::vector<std::map<int32_t, fRead>>& rows);
std::string seq_table_text(const std::vector<std::vector<char>>& columns,
                           const std::vector<std::map<int32_t, std::string>>& rows);
std::string flow_consensus_text(const contig& c);
std::string layout_text(const contig& c, const std::vector<std::string>& ids);

}  // namespace pelkrin
