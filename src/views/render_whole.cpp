// The whole contig in base space into a stream: the consensus, then every
// print row with all its reads.
#include <ostream>

#include "ace/contig.h"

namespace pelkrin {
namespace {

const std::vector<char>& bases_of(const contig& c, const std::string& name) {
    static const std::vector<char> none;
    const auto found = c.reads.find(name);
    return found == c.reads.end() ? none : found->second.seq;
}

int16_t length_of(const contig& c, const std::string& name) {
    const auto found = c.reads.find(name);
    return found == c.reads.end() ? 0 : found->second.len;
}

}  // namespace

void contig::print_align_map_html(std::ostream& out, const colour_map& colours) {
    if (print_map.empty()) create_print_map();
    std::string text;
    toHTML(text, consensus, colours);
    text.push_back('\n');
    for (const auto& row : print_map) {
        int64_t x = 0;
        for (const auto& [p, name] : row) {
            if (p > x + 1) text.append(static_cast<std::size_t>(p - x - 1), ' ');
            toHTML(text, bases_of(*this, name), colours);
            x = static_cast<int64_t>(p) + length_of(*this, name) - 1;
        }
        text.push_back('\n');
    }
    out << text;
}

void contig::print_align_map(std::ostream& out) {
    for (char ch : consensus) out << ch;
    out << std::endl;
    // The consensus is out before the rows are built.
    if (print_map.empty()) create_print_map();
    for (const auto& row : print_map) {
        int64_t x = 0;
        for (const auto& [p, name] : row) {
            for (int64_t q = x + 1; q < p; ++q) out << " ";
            for (char ch : bases_of(*this, name)) out << ch;
            x = static_cast<int64_t>(p) + length_of(*this, name) - 1;
        }
        out << std::endl;
    }
}

}  // namespace pelkrin
