#include "bam_fixture.h"

#include <htslib/sam.h>
#include <unistd.h>

#include <cctype>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "files.h"
#include "sff/read_index.h"
#include "sff/reader.h"
#include "sff/seq_read.h"
#include "lenient/ace_layout.h"
#include "sff_writer.h"

namespace pelkrin::test {
namespace {

char complement(char c) {
    switch (c) {
        case 'A': case 'a': return 'T';
        case 'C': case 'c': return 'G';
        case 'G': case 'g': return 'C';
        case 'T': case 't': return 'A';
        default: return 'N';
    }
}

}  // namespace

std::vector<contig> contigs_of(const std::string& ace_text) {
    std::vector<contig> found;
    ace_options options;
    options.each_contig = [&](contig& c) { found.push_back(c); };
    read_ace(bytes_of(ace_text), "in.ace", options);
    return found;
}

std::string sff_of_reads(const std::vector<contig>& contigs, bool big_endian, std::uint16_t signal_offset) {
    sff_fixture f;
    f.big_endian = big_endian;
    std::map<std::string, std::string> bases_of;  // each read once
    for (const contig& c : contigs) {
        for (const auto& [name, r] : c.reads) {
            std::string bases;
            for (char b : r.seq) {
                if (b != '*') bases.push_back(b);
            }
            if (r.uncomplemented == 0) {
                std::string back(bases.rbegin(), bases.rend());
                for (char& b : back) b = complement(b);
                bases = back;
            }
            bases_of[name] = std::string("TCAG").append(bases);  // GCC 12 warns wrongly about "TCAG" + ...
        }
    }
    std::size_t most_flows = 4;
    std::vector<sff_fixture_read> reads;
    for (const auto& [name, bases] : bases_of) {
        sff_fixture_read r;
        r.name = name;
        r.bases = bases;
        int flow = -1;
        std::size_t seed = 0;
        for (char c : name) seed = seed * 31 + static_cast<unsigned char>(c);
        for (std::size_t i = 0; i < bases.size(); ++i) {
            const int before = flow;
            const char b = static_cast<char>(std::toupper(static_cast<unsigned char>(bases[i])));
            const bool called = b == 'T' || b == 'A' || b == 'C' || b == 'G';
            do ++flow;
            while (called && "TACG"[flow % 4] != b);
            r.flow_index.push_back(static_cast<std::uint8_t>(flow - before));
            r.quals.push_back(static_cast<std::uint8_t>(10 + (seed + i * 7) % 31));
        }
        r.flowgram.assign(static_cast<std::size_t>(flow + 1), 0);
        int at = -1;
        for (std::uint8_t step : r.flow_index) {
            at += step;
            r.flowgram[static_cast<std::size_t>(at)] += 100;
        }
        for (std::size_t k = 0; k < r.flowgram.size(); ++k) {
            r.flowgram[k] = static_cast<std::uint16_t>(r.flowgram[k] + (seed + k * 13) % 17);
        }
        r.clip_qual_left = 5;
        r.clip_qual_right = static_cast<std::uint16_t>(bases.size());
        most_flows = std::max(most_flows, r.flowgram.size());
        reads.push_back(std::move(r));
    }
    f.flows = static_cast<std::uint16_t>((most_flows + 3) / 4 * 4);
    for (sff_fixture_read& r : reads) {
        r.flowgram.resize(f.flows, 0);
        for (std::uint16_t& v : r.flowgram) v = static_cast<std::uint16_t>(v + signal_offset);
    }
    f.reads = std::move(reads);
    return build_sff(f).bytes;
}

std::vector<bam_read> read_bam(const std::filesystem::path& path) {
    samFile* in = sam_open(path.c_str(), "r");
    if (in == nullptr) throw std::runtime_error("cannot open " + path.string());
    sam_hdr_t* header = sam_hdr_read(in);
    bam1_t* b = bam_init1();
    std::vector<bam_read> reads;
    while (sam_read1(in, header, b) >= 0) {
        bam_read r;
        r.name = bam_get_qname(b);
        r.flag = b->core.flag;
        r.tid = b->core.tid;
        r.pos = b->core.pos;
        r.mapq = b->core.qual;
        const std::uint32_t* cigar = bam_get_cigar(b);
        for (std::uint32_t k = 0; k < b->core.n_cigar; ++k) {
            const char op = bam_cigar_opchr(cigar[k]);
            const std::uint32_t length = bam_cigar_oplen(cigar[k]);
            r.cigar.append(std::to_string(length)).push_back(op);
            if (op == 'M' || op == 'I' || op == 'S' || op == '=' || op == 'X') r.query_length += length;
        }
        if (r.cigar.empty()) r.cigar.push_back('*');  // assigning "*" makes GCC 12 warn wrongly
        const std::uint8_t* seq = bam_get_seq(b);
        for (int i = 0; i < b->core.l_qseq; ++i) r.seq.push_back(seq_nt16_str[bam_seqi(seq, i)]);
        const std::uint8_t* qual = bam_get_qual(b);
        if (b->core.l_qseq > 0 && qual[0] != 0xff) r.quals.assign(qual, qual + b->core.l_qseq);
        if (const std::uint8_t* rg = bam_aux_get(b, "RG")) r.read_group = bam_aux2Z(rg);
        if (const std::uint8_t* fz = bam_aux_get(b, "FZ")) {
            const std::uint32_t n = bam_auxB_len(fz);
            for (std::uint32_t k = 0; k < n; ++k) r.flowgram.push_back(static_cast<std::uint16_t>(bam_auxB2i(fz, k)));
        }
        if (const std::uint8_t* zf = bam_aux_get(b, "ZF")) r.first_flow = bam_aux2i(zf);
        if (const std::uint8_t* nm = bam_aux_get(b, "NM")) r.nm = bam_aux2i(nm);
        if (const std::uint8_t* md = bam_aux_get(b, "MD")) r.md = bam_aux2Z(md);
        reads.push_back(std::move(r));
    }
    bam_destroy1(b);
    sam_hdr_destroy(header);
    sam_close(in);
    return reads;
}

std::string bam_header(const std::filesystem::path& path) {
    samFile* in = sam_open(path.c_str(), "r");
    if (in == nullptr) throw std::runtime_error("cannot open " + path.string());
    sam_hdr_t* header = sam_hdr_read(in);
    std::string text = header != nullptr ? sam_hdr_str(header) : "";
    sam_hdr_destroy(header);
    sam_close(in);
    return text;
}

std::map<std::string, std::vector<int>> ace_depth(const std::vector<contig>& contigs) {
    std::map<std::string, std::vector<int>> depth;
    for (const contig& c : contigs) {
        // Unpadded position of each padded column holding a base.
        std::vector<std::int64_t> unpadded(c.consensus.size(), -1);
        std::int64_t bases = 0;
        for (std::size_t p = 0; p < c.consensus.size(); ++p) {
            if (c.consensus[p] != '*') unpadded[p] = bases++;
        }
        std::vector<int>& d = depth[c.name];
        d.assign(static_cast<std::size_t>(bases), 0);
        for (const auto& [name, r] : c.reads) {
            if (r.align_start < 1 || r.align_end < r.align_start) continue;
            for (std::int64_t i = r.align_start - 1; i < r.align_end && i < static_cast<std::int64_t>(r.seq.size()); ++i) {
                const std::int64_t column = r.pos - 1 + i;
                if (column < 0 || column >= static_cast<std::int64_t>(c.consensus.size())) continue;
                if (r.seq[static_cast<std::size_t>(i)] == '*' || unpadded[static_cast<std::size_t>(column)] < 0) continue;
                ++d[static_cast<std::size_t>(unpadded[static_cast<std::size_t>(column)])];
            }
        }
    }
    return depth;
}

std::string tool_path(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::string dirs = path != nullptr ? path : "/usr/bin:/bin";
    std::size_t from = 0;
    while (from <= dirs.size()) {
        const std::size_t colon = dirs.find(':', from);
        const std::string dir = dirs.substr(from, colon == std::string::npos ? std::string::npos : colon - from);
        const std::string candidate = std::string(dir.empty() ? "." : dir).append("/").append(name);
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
        if (colon == std::string::npos) break;
        from = colon + 1;
    }
    return "";
}

std::string pelkrin_bam_binary() { return PELKRIN_BAM_BINARY; }

}  // namespace pelkrin::test

namespace pelkrin::test {

std::map<std::string, std::vector<std::string>> reads_file_entries(const std::string& text) {
    std::map<std::string, std::vector<std::string>> entries;
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = text.find('\n', from);
        lines.push_back(text.substr(from, end == std::string::npos ? std::string::npos : end - from));
        from = end == std::string::npos ? text.size() : end + 1;
    }
    for (std::size_t i = 0; i < lines.size();) {
        if (!lines[i].empty() && lines[i][0] == '>') {
            ++i;
            continue;
        }
        const std::string name = lines[i].substr(0, lines[i].rfind('\t'));
        std::vector<std::string> data;
        for (std::size_t k = 1; k <= 3 && i + k < lines.size(); ++k) data.push_back(lines[i + k]);
        entries[name] = data;
        i += 4;
    }
    return entries;
}

std::map<std::string, std::string> clipped_bases(const std::filesystem::path& sff) {
    std::ostringstream quiet;
    reader r(sff.string(), console{quiet, quiet});
    r.get_header();
    read_index index;
    r.build_read_index(index);
    std::map<std::string, std::string> bases;
    for (const auto& [name, position] : index) {
        seqRead read;
        r.get_read(position, read);
        bases[name] = std::string(read.bases.begin(), read.bases.end());
    }
    return bases;
}

}  // namespace pelkrin::test
