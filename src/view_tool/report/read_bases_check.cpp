#include "view_tool/report/read_bases_check.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "reads_format/values_line.h"

namespace pelkrin {
namespace {

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

char complement(char c) {
    switch (c) {
        case 'A': return 'T';
        case 'T': return 'A';
        case 'C': return 'G';
        case 'G': return 'C';
        default: return c;
    }
}

// The called bases into `out`; false when one is called at no flow.
bool called_bases(std::string_view line, std::size_t flows, std::string& out) {
    static constexpr char flow_order[] = "TACG";
    out.clear();
    const char* p = line.data();
    const char* const end = p + line.size();
    while (p < end) {
        if (*p == '-') return false;  // a values line: a minus sign comes before digits only
        std::uint64_t flow = 0;
        for (; p < end && *p != '\t'; ++p) {
            flow = flow * 10 + static_cast<std::uint64_t>(*p - '0');
            if (flow >= flows) return false;
        }
        if (p < end) ++p;  // the tab
        out.push_back(flow_order[flow % 4]);
    }
    return true;
}

}  // namespace

bool entry_carries_read_bases(std::string_view flow_indexes, std::size_t flows, const std::vector<char>& padded_bases) {
    if (!is_values_line(flow_indexes)) return true;
    // Kept by each thread from read to read: the report judges every read.
    thread_local std::string called;
    thread_local std::string bases;
    if (!called_bases(flow_indexes, flows, called)) return false;
    if (called.empty()) return true;
    bases.clear();
    for (const char c : padded_bases) {
        if (c != '*') bases.push_back(upper(c));
    }
    if (bases.find(called) != std::string::npos) return true;
    std::reverse(bases.begin(), bases.end());
    std::transform(bases.begin(), bases.end(), bases.begin(), complement);
    return bases.find(called) != std::string::npos;
}

}  // namespace pelkrin
