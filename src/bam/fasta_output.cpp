#include "bam/fasta_output.h"

#include <algorithm>

namespace pelkrin::bam {

void append_fasta_record(text_buffer& out, std::string_view name, std::string_view bases) {
    constexpr std::size_t line = 60;
    out.put('>');
    out.write(name);
    out.put('\n');
    for (std::size_t at = 0; at < bases.size(); at += line) {
        out.write(bases.substr(at, std::min(line, bases.size() - at)));
        out.put('\n');
    }
}

}  // namespace pelkrin::bam
