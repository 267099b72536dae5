#include "targets/bam_target.h"

#include <htslib/sam.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "bam/edit_tags.h"
#include "bam/padded_reference.h"
#include "bam/record_builder.h"
#include "common/fatal_error.h"
#include "lenient/ace_layout.h"

namespace pelkrin::fuzz {
namespace {

// Says which rule a record broke before the fuzzer stops on it.
void require(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "bam_records: a record breaks: %s\n", rule);
    std::abort();
}

// The record as samtools would judge it.
void check_record(const bam1_t* b, const bam::padded_reference& ref) {
    require(b->core.l_qseq >= 0, "SEQ's length");
    const std::uint8_t* qual = bam_get_qual(b);
    if (b->core.l_qseq > 0 && qual[0] != 0xff) {
        for (int i = 0; i < b->core.l_qseq; ++i) require(qual[i] <= 93, "a quality above 93");
    }
    if ((b->core.flag & BAM_FUNMAP) != 0) {
        require(b->core.n_cigar == 0, "an unmapped read with a CIGAR");
        return;
    }
    const std::uint32_t* cigar = bam_get_cigar(b);
    require(bam_cigar2qlen(b->core.n_cigar, cigar) == b->core.l_qseq, "the CIGAR does not span SEQ");
    require(b->core.pos >= 0, "a position before the reference");
    require(b->core.pos + bam_cigar2rlen(b->core.n_cigar, cigar) <= static_cast<std::int64_t>(ref.bases.size()),
            "the alignment runs past the reference");
    // Clips only at the ends, M next to them.
    std::uint32_t first = 0;
    std::uint32_t last = b->core.n_cigar;
    while (first < last && bam_cigar_op(cigar[first]) == BAM_CSOFT_CLIP) ++first;
    while (last > first && bam_cigar_op(cigar[last - 1]) == BAM_CSOFT_CLIP) --last;
    require(first < last, "nothing but clips");
    require(bam_cigar_op(cigar[first]) == BAM_CMATCH && bam_cigar_op(cigar[last - 1]) == BAM_CMATCH,
            "the alignment does not begin and end with M");
    for (std::uint32_t k = first; k < last; ++k) require(bam_cigar_op(cigar[k]) != BAM_CSOFT_CLIP, "a clip inside");
    // NM and MD are those of the record's own bases.
    std::string seq;
    for (int i = 0; i < b->core.l_qseq; ++i) seq.push_back(seq_nt16_str[bam_seqi(bam_get_seq(b), i)]);
    std::vector<bam::cigar_op> ops;
    for (std::uint32_t k = 0; k < b->core.n_cigar; ++k) {
        ops.push_back(bam::cigar_op{bam_cigar_opchr(cigar[k]), bam_cigar_oplen(cigar[k])});
    }
    const bam::edit_tags again = bam::edit_tags_of(ops, seq, ref.bases, b->core.pos);
    const std::uint8_t* md = bam_aux_get(b, "MD");
    const std::uint8_t* nm = bam_aux_get(b, "NM");
    require(md != nullptr && nm != nullptr, "no NM or MD");
    require(again.md == bam_aux2Z(md) && again.nm == bam_aux2i(nm), "NM or MD not as calmd makes them");
}

}  // namespace

void bam_records(const std::uint8_t* data, std::size_t size) {
    std::uint32_t ace_length = 0;
    if (size >= 4) std::memcpy(&ace_length, data, 4);
    const std::size_t rest = size >= 4 ? size - 4 : 0;
    const std::size_t ace_size = rest == 0 ? 0 : ace_length % (rest + 1);
    const std::span<const std::uint8_t> ace(data + (size >= 4 ? 4 : 0), ace_size);
    const std::span<const std::uint8_t> sff_bytes(ace.data() + ace_size, rest - ace_size);
    try {
        const bam::sff_reads sff("in.sff", sff_bytes);
        const std::vector<std::string> groups = {"in"};
        bam::record_builder builder(sff, groups);
        bam::record_counts counts;
        bam1_t* b = bam_init1();
        ace_options options;
        std::int32_t tid = 0;
        options.each_contig = [&](contig& c) {
            const bam::padded_reference ref = bam::make_padded_reference(c.consensus);
            const std::int32_t id = ref.bases.empty() ? -1 : tid++;
            for (const auto& [name, read] : c.reads) {
                builder.build(b, name, read, ref, id, counts);
                if (id >= 0) check_record(b, ref);
            }
        };
        try {
            read_ace(ace, "in.ace", options);
        } catch (...) {
            bam_destroy1(b);
            throw;
        }
        bam_destroy1(b);
    } catch (const fatal_error&) {
        // A clean error: the input is no ACE or SFF file, or it is damaged.
    }
}

}  // namespace pelkrin::fuzz
