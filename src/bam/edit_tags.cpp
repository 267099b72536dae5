#include "bam/edit_tags.h"

#include <htslib/hts.h>

#include <cctype>

namespace pelkrin::bam {
namespace {

unsigned code(char base) { return seq_nt16_table[static_cast<unsigned char>(base)]; }

// MD names reference bases in capitals, whatever the consensus' case.
char upper(char base) { return static_cast<char>(std::toupper(static_cast<unsigned char>(base))); }

}  // namespace

edit_tags edit_tags_of(const std::vector<cigar_op>& cigar, std::string_view seq, std::string_view ref,
                       std::int64_t pos) {
    edit_tags tags;
    std::uint64_t same = 0;  // matching bases since the last difference
    auto x = static_cast<std::size_t>(pos);
    std::size_t y = 0;
    for (const cigar_op& op : cigar) {
        switch (op.op) {
            case 'M':
                for (std::uint32_t j = 0; j < op.length && x + j < ref.size() && y + j < seq.size(); ++j) {
                    const unsigned read_base = code(seq[y + j]);
                    const unsigned ref_base = code(ref[x + j]);
                    if ((read_base == ref_base && read_base != 15) || read_base == 0) {
                        ++same;
                    } else {
                        tags.md.append(std::to_string(same)).push_back(upper(ref[x + j]));
                        same = 0;
                        ++tags.nm;
                    }
                }
                x += op.length;
                y += op.length;
                break;
            case 'D':
                tags.md.append(std::to_string(same)).push_back('^');
                for (std::uint32_t j = 0; j < op.length && x + j < ref.size(); ++j) tags.md.push_back(upper(ref[x + j]));
                same = 0;
                x += op.length;
                tags.nm += static_cast<std::int32_t>(op.length);
                break;
            case 'I':
                y += op.length;
                tags.nm += static_cast<std::int32_t>(op.length);
                break;
            default:  // a clip
                y += op.length;
                break;
        }
    }
    tags.md.append(std::to_string(same));
    return tags;
}

}  // namespace pelkrin::bam
