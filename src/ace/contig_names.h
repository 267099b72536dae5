#pragma once
// What Pelkrin's output files need of a contig: its name and its reads'
// names, each once, in ascending order (the order of contig::reads).
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "contig.h"

namespace pelkrin {

struct contig_names {
    std::string name;
    std::string names;                   // the reads' names one after another
    std::vector<std::size_t> name_ends;  // where each name ends in `names`

    static contig_names of(const contig& c) {
        contig_names n;
        n.name = c.name;
        n.name_ends.reserve(c.reads.size());
        for (const auto& entry : c.reads) {
            n.names += entry.first;
            n.name_ends.push_back(n.names.size());
        }
        return n;
    }
    std::size_t reads() const { return name_ends.size(); }
    std::string_view read_name(std::size_t i) const {
        const std::size_t begin = i == 0 ? 0 : name_ends[i - 1];
        return std::string_view(names).substr(begin, name_ends[i] - begin);
    }
};

}  // namespace pelkrin
