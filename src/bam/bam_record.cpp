#include "bam/bam_record.h"

#include <string>

#include "common/fatal_error.h"

namespace pelkrin::bam {
namespace {

std::uint32_t op_code(char op) {
    switch (op) {
        case 'M': return BAM_CMATCH;
        case 'I': return BAM_CINS;
        case 'D': return BAM_CDEL;
        default: return BAM_CSOFT_CLIP;
    }
}

[[noreturn]] void cannot_hold(std::string_view name, const char* what) {
    throw fatal_error(1, "Pelkrin-bam: read " + std::string(name) + ": " + what + "\n");
}

}  // namespace

void fill_record(bam1_t* b, const record_parts& p) {
    std::vector<std::uint32_t> cigar;
    if (p.cigar != nullptr) {
        cigar.reserve(p.cigar->size());
        for (const cigar_op& op : *p.cigar) cigar.push_back(bam_cigar_gen(op.length, op_code(op.op)));
    }
    // Room for the tags, so that adding them does not reallocate the record.
    const std::size_t aux = 3 + p.read_group.size() + 1 + (p.flowgram.empty() ? 0 : 8 + 2 * p.flowgram.size()) +
                            (p.first_flow >= 0 ? 7 : 0) +
                            (p.edits != nullptr ? 7 + 3 + p.edits->md.size() + 1 : 0);
    const bool has_quals = !p.quals.empty() && p.quals.size() == p.seq.size();
    if (bam_set1(b, p.name.size(), p.name.data(), p.flag, p.tid, p.pos, p.mapq, cigar.size(),
                 cigar.empty() ? nullptr : cigar.data(), -1, -1, 0, p.seq.size(), p.seq.data(),
                 has_quals ? reinterpret_cast<const char*>(p.quals.data()) : nullptr, aux) < 0) {
        cannot_hold(p.name, "htslib cannot make a record of it (name over 254 characters?)");
    }
    if (!p.read_group.empty()) {
        const std::string rg(p.read_group);
        if (bam_aux_append(b, "RG", 'Z', static_cast<int>(rg.size() + 1), reinterpret_cast<const uint8_t*>(rg.c_str())) < 0)
            cannot_hold(p.name, "no room for its tags");
    }
    if (!p.flowgram.empty() &&
        bam_aux_update_array(b, "FZ", 'S', static_cast<std::uint32_t>(p.flowgram.size()),
                             const_cast<std::uint16_t*>(p.flowgram.data())) < 0) {
        cannot_hold(p.name, "no room for its flow signals");
    }
    if (p.first_flow >= 0 && bam_aux_update_int(b, "ZF", p.first_flow) < 0) cannot_hold(p.name, "no room for its tags");
    if (p.edits != nullptr) {
        if (bam_aux_update_int(b, "NM", p.edits->nm) < 0 ||
            bam_aux_append(b, "MD", 'Z', static_cast<int>(p.edits->md.size() + 1),
                           reinterpret_cast<const uint8_t*>(p.edits->md.c_str())) < 0) {
            cannot_hold(p.name, "no room for its tags");
        }
    }
}

}  // namespace pelkrin::bam
