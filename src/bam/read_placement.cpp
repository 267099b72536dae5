#include "bam/read_placement.h"

#include <algorithm>

namespace pelkrin::bam {
namespace {

void add(std::vector<cigar_op>& cigar, char op, std::uint32_t length = 1) {
    if (!cigar.empty() && cigar.back().op == op) {
        cigar.back().length += length;
    } else {
        cigar.push_back(cigar_op{op, length});
    }
}

}  // namespace

placed_read place_read(const READ& read, const padded_reference& ref) {
    placed_read placed;
    const auto columns = static_cast<std::int64_t>(ref.padded.size());
    const bool has_range = read.align_start >= 1 && read.align_end >= read.align_start;
    // One operation per column, and where the first base of M stands.
    std::vector<cigar_op> ops;
    std::int64_t first_match = -1;  // padded position of the first M
    for (std::size_t i = 0; i < read.seq.size(); ++i) {
        const char c = read.seq[i];
        const bool pad = c == '*';
        if (!pad) placed.seq.push_back(c);
        const auto column = static_cast<std::int64_t>(read.pos) - 1 + static_cast<std::int64_t>(i);
        const auto in_read = static_cast<std::int64_t>(i) + 1;
        const bool aligned = has_range && in_read >= read.align_start && in_read <= read.align_end && column >= 0 &&
                             column < columns;
        if (!aligned) {
            if (!pad) add(ops, 'S');
            continue;
        }
        const bool consensus_pad = ref.is_pad(column);
        if (!pad && !consensus_pad) {
            if (first_match < 0) first_match = column;
            add(ops, 'M');
        } else if (!pad) {
            add(ops, 'I');
        } else if (!consensus_pad) {
            add(ops, 'D');
        }
    }
    // The ends: a leading or trailing deletion is dropped, an insertion there
    // becomes a clip, until an M stands at each end of the aligned part.
    std::vector<cigar_op> cigar;
    std::size_t begin = 0;
    std::size_t end = ops.size();
    std::uint32_t front_clip = 0;
    std::uint32_t back_clip = 0;
    while (begin < end && ops[begin].op != 'M') {
        if (ops[begin].op != 'D') front_clip += ops[begin].length;
        ++begin;
    }
    while (end > begin && ops[end - 1].op != 'M') {
        if (ops[end - 1].op != 'D') back_clip += ops[end - 1].length;
        --end;
    }
    if (begin == end) {
        // No base of the read stands over a base of the consensus.
        placed.mapped = false;
        const std::int64_t start = std::clamp<std::int64_t>(static_cast<std::int64_t>(read.pos) - 1, 0,
                                                            std::max<std::int64_t>(columns - 1, 0));
        const auto bases = static_cast<std::int64_t>(ref.bases.size());
        placed.pos = columns == 0 ? 0 : std::min(ref.bases_before[static_cast<std::size_t>(start)],
                                                 std::max<std::int64_t>(bases - 1, 0));
        return placed;
    }
    if (front_clip > 0) cigar.push_back(cigar_op{'S', front_clip});
    for (std::size_t k = begin; k < end; ++k) add(cigar, ops[k].op, ops[k].length);
    if (back_clip > 0) add(cigar, 'S', back_clip);
    placed.mapped = true;
    placed.pos = ref.bases_before[static_cast<std::size_t>(first_match)];
    placed.cigar = std::move(cigar);
    return placed;
}

std::string cigar_text(const std::vector<cigar_op>& cigar) {
    if (cigar.empty()) return "*";
    std::string text;
    for (const cigar_op& op : cigar) text.append(std::to_string(op.length)).push_back(op.op);
    return text;
}

}  // namespace pelkrin::bam
