// Writes a well-formed SFF file and an ACE assembly of its reads, deterministic
// for a given seed:
//
//   make_assembly PREFIX READS [FLOWS [READS_PER_CONTIG [USED_PERCENT [SEED]]]]
//
// writes PREFIX.sff (big-endian, flow order TACG, key TCAG) and PREFIX.ace. The
// SFF records come in a shuffled order, as a sequencer's wells do; the assembly
// uses USED_PERCENT of the reads, READS_PER_CONTIG to a contig. Bases are called
// from a flowgram that matches them; pads '*' appear in the consensus and reads.
#include "random_source.h"
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

class output {
public:
    explicit output(const std::string& path) : file_(std::fopen(path.c_str(), "wb")) {
        if (!file_) {
            std::fprintf(stderr, "make_assembly: can not write %s\n", path.c_str());
            std::exit(1);
        }
        buffer_.reserve(1 << 20);
    }
    ~output() {
        flush();
        std::fclose(file_);
    }
    void text(std::string_view s) {
        buffer_.append(s);
        if (buffer_.size() > (1 << 20)) flush();
    }
    void number(long long v) {
        char digits[24];
        auto end = std::to_chars(digits, digits + sizeof digits, v).ptr;
        text(std::string_view(digits, static_cast<std::size_t>(end - digits)));
    }
    void u8(unsigned v) { buffer_.push_back(static_cast<char>(v)); }
    void u16(unsigned v) {
        u8((v >> 8) & 0xFF);
        u8(v & 0xFF);
    }
    void u32(std::uint32_t v) {
        u16(v >> 16);
        u16(v & 0xFFFF);
    }
    void flush() {
        std::fwrite(buffer_.data(), 1, buffer_.size(), file_);
        buffer_.clear();
    }

private:
    std::FILE* file_;
    std::string buffer_;
};

constexpr char flow_order[] = "TACG";
constexpr std::string_view key = "TCAG";

struct read_plan {
    std::string name;
    int contig = -1;           // -1: in the SFF file only
    int start = 1;             // padded start in the consensus
    std::string padded;        // the read as the assembly aligns it
    bool complemented = false;
    std::string called;        // the bases as the sequencer called them, key first
};

std::string name_of(std::uint64_t i) {
    static const char digits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string tail(5, '0');
    for (int k = 4; k >= 0; --k) {
        tail[static_cast<std::size_t>(k)] = digits[i % 36];
        i /= 36;
    }
    return "E3MFGYR02" + tail;
}

char complement(char b) {
    switch (b) {
        case 'A': return 'T';
        case 'C': return 'G';
        case 'G': return 'C';
        case 'T': return 'A';
        default: return b;
    }
}

// Keeps as many bases as the flows can call, and returns the flow index per base.
std::vector<std::uint8_t> call_flows(std::string& bases, int flows) {
    std::vector<std::uint8_t> index;
    int flow = -1;
    int previous = -1;
    std::size_t i = 0;
    for (; i < bases.size(); ++i) {
        if (i > 0 && bases[i] == bases[i - 1]) {
            index.push_back(0);
            continue;
        }
        do {
            ++flow;
        } while (flow < flows && flow_order[flow % 4] != bases[i]);
        if (flow >= flows) break;
        index.push_back(static_cast<std::uint8_t>(flow - previous));
        previous = flow;
    }
    bases.resize(i);
    return index;
}

void write_sff(const std::string& path, const std::vector<read_plan>& reads, const std::vector<std::size_t>& order,
               int flows, random_source& random) {
    output out(path);
    const std::size_t unpadded = 31 + static_cast<std::size_t>(flows) + key.size();
    const std::size_t header_length = (unpadded + 7) / 8 * 8;
    out.text(".sff");
    out.u32(1);
    for (int i = 0; i < 8; ++i) out.u8(0);  // no index section
    out.u32(0);
    out.u32(static_cast<std::uint32_t>(reads.size()));
    out.u16(static_cast<unsigned>(header_length));
    out.u16(static_cast<unsigned>(key.size()));
    out.u16(static_cast<unsigned>(flows));
    out.u8(1);
    for (int i = 0; i < flows; ++i) out.u8(static_cast<unsigned char>(flow_order[i % 4]));
    out.text(key);
    for (std::size_t i = unpadded; i < header_length; ++i) out.u8(0);

    std::vector<unsigned> signal(static_cast<std::size_t>(flows));
    for (std::size_t r : order) {
        std::string bases = reads[r].called;
        const std::vector<std::uint8_t> index = call_flows(bases, flows);
        const std::string& name = reads[r].name;
        const std::size_t read_header = (16 + name.size() + 7) / 8 * 8;
        out.u16(static_cast<unsigned>(read_header));
        out.u16(static_cast<unsigned>(name.size()));
        out.u32(static_cast<std::uint32_t>(bases.size()));
        out.u16(static_cast<unsigned>(key.size() + 1));  // quality clip: after the key
        out.u16(static_cast<unsigned>(bases.size()));
        out.u16(0);
        out.u16(0);
        out.text(name);
        for (std::size_t i = 16 + name.size(); i < read_header; ++i) out.u8(0);

        for (auto& s : signal) s = static_cast<unsigned>(random.below(16));
        int flow = -1;
        for (std::size_t i = 0; i < bases.size(); ++i) {
            flow += index[i];
            signal[static_cast<std::size_t>(flow)] += index[i] != 0 ? 80u + static_cast<unsigned>(random.below(30)) : 100u;
        }
        for (unsigned s : signal) out.u16(s);
        for (std::uint8_t v : index) out.u8(v);
        out.text(bases);
        for (std::size_t i = 0; i < bases.size(); ++i) out.u8(static_cast<unsigned>(random.between(12, 40)));
        const std::size_t data = static_cast<std::size_t>(flows) * 2 + bases.size() * 3;
        for (std::size_t i = data; i % 8 != 0; ++i) out.u8(0);
    }
}

void write_lines(output& out, std::string_view text, std::size_t width) {
    for (std::size_t at = 0; at < text.size(); at += width) {
        out.text(text.substr(at, width));
        out.text("\n");
    }
}

void write_ace(const std::string& path, const std::vector<read_plan>& reads,
               const std::vector<std::vector<std::size_t>>& contigs, const std::vector<std::string>& consensus,
               random_source& random) {
    output out(path);
    std::size_t used = 0;
    for (const auto& c : contigs) used += c.size();
    out.text("AS ");
    out.number(static_cast<long long>(contigs.size()));
    out.text(" ");
    out.number(static_cast<long long>(used));
    out.text("\n\n");
    for (std::size_t c = 0; c < contigs.size(); ++c) {
        const std::string& cons = consensus[c];
        out.text("CO Contig");
        out.number(static_cast<long long>(c + 1));
        out.text(" ");
        out.number(static_cast<long long>(cons.size()));
        out.text(" ");
        out.number(static_cast<long long>(contigs[c].size()));
        out.text(" ");
        out.number(static_cast<long long>(contigs[c].size()));
        out.text(" U\n");
        write_lines(out, cons, 60);
        out.text("\nBQ\n");
        std::string quals;
        for (char b : cons) {
            if (b == '*') continue;
            quals += std::to_string(random.between(20, 60));
            quals += ' ';
        }
        write_lines(out, quals, 150);
        out.text("\n");
        for (std::size_t r : contigs[c]) {
            out.text("AF ");
            out.text(reads[r].name);
            out.text(reads[r].complemented ? " C " : " U ");
            out.number(reads[r].start);
            out.text("\n");
        }
        for (std::size_t r : contigs[c]) {
            out.text("BS ");
            out.number(std::max(1, reads[r].start));
            out.text(" ");
            out.number(std::max(1, reads[r].start) + 9);
            out.text(" ");
            out.text(reads[r].name);
            out.text("\n");
        }
        out.text("\n");
        for (std::size_t r : contigs[c]) {
            const std::string& seq = reads[r].padded;
            out.text("RD ");
            out.text(reads[r].name);
            out.text(" ");
            out.number(static_cast<long long>(seq.size()));
            out.text(" 0 0\n");
            write_lines(out, seq, 60);
            out.text("\nQA 1 ");
            out.number(static_cast<long long>(seq.size()));
            out.text(" 1 ");
            out.number(static_cast<long long>(seq.size()));
            out.text("\nDS CHROMAT_FILE: ");
            out.text(reads[r].name);
            out.text(" PHD_FILE: ");
            out.text(reads[r].name);
            out.text(".phd.1 TIME: Sat Nov 21 12:00:00 2026 CHEM: 454\n\n");
        }
    }
}

int parse(const char* text, int fallback) {
    if (text == nullptr) return fallback;
    int v = 0;
    auto [ptr, ec] = std::from_chars(text, text + std::char_traits<char>::length(text), v);
    if (ec != std::errc() || *ptr != '\0' || v < 0) {
        std::fprintf(stderr, "make_assembly: not a number: %s\n", text);
        std::exit(2);
    }
    return v;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 7) {
        std::fprintf(stderr, "usage: make_assembly PREFIX READS [FLOWS [READS_PER_CONTIG [USED_PERCENT [SEED]]]]\n");
        return 2;
    }
    const std::string prefix = argv[1];
    const int n_reads = parse(argv[2], 0);
    const int flows = std::clamp(parse(argc > 3 ? argv[3] : nullptr, 800), 8, 65535);
    const int per_contig = std::max(1, parse(argc > 4 ? argv[4] : nullptr, 100));
    const int used_percent = std::min(100, parse(argc > 5 ? argv[5] : nullptr, 99));
    random_source random(static_cast<std::uint64_t>(parse(argc > 6 ? argv[6] : nullptr, 1)));

    std::vector<read_plan> reads(static_cast<std::size_t>(n_reads));
    for (std::size_t i = 0; i < reads.size(); ++i) reads[i].name = name_of(i * 7919 % 60466176);

    // Which reads the assembly uses, in a random order, cut into contigs.
    std::vector<std::size_t> shuffled(reads.size());
    for (std::size_t i = 0; i < shuffled.size(); ++i) shuffled[i] = i;
    for (std::size_t i = shuffled.size(); i > 1; --i) std::swap(shuffled[i - 1], shuffled[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);
    const std::size_t used = reads.size() * static_cast<std::size_t>(used_percent) / 100;
    std::vector<std::vector<std::size_t>> contigs;
    for (std::size_t i = 0; i < used; ++i) {
        if (i % static_cast<std::size_t>(per_contig) == 0) contigs.emplace_back();
        contigs.back().push_back(shuffled[i]);
    }

    // Each contig: a padded consensus, and reads cut from it at a coverage of about 8.
    const int mean_length = std::max(20, flows / 2);
    std::vector<std::string> consensus(contigs.size());
    for (std::size_t c = 0; c < contigs.size(); ++c) {
        const int length = std::max(mean_length + 10, static_cast<int>(contigs[c].size()) * mean_length / 8);
        std::string& cons = consensus[c];
        for (int i = 0; i < length; ++i) cons.push_back(random.below(100) == 0 ? '*' : "ACGT"[random.below(4)]);
        for (std::size_t k = 0; k < contigs[c].size(); ++k) {
            read_plan& r = reads[contigs[c][k]];
            r.contig = static_cast<int>(c);
            const int read_length = random.between(mean_length * 3 / 4, mean_length * 5 / 4);
            // The first read starts left of the consensus, the last runs past its end.
            r.start = k == 0 ? -3 : k + 1 == contigs[c].size() ? length - read_length + 6
                                                               : random.between(1, std::max(1, length - read_length + 1));
            for (int p = r.start; p < r.start + read_length; ++p) {
                const bool inside = p >= 1 && p <= length;
                r.padded.push_back(inside ? cons[static_cast<std::size_t>(p - 1)] : "ACGT"[random.below(4)]);
            }
            r.complemented = random.below(2) == 0;
        }
    }
    for (read_plan& r : reads) {
        if (r.contig < 0) {
            for (int i = 0, n = random.between(mean_length * 3 / 4, mean_length * 5 / 4); i < n; ++i)
                r.padded.push_back("ACGT"[random.below(4)]);
        }
        std::string bases;
        for (char b : r.padded)
            if (b != '*') bases.push_back(b);
        if (r.complemented) {
            std::reverse(bases.begin(), bases.end());
            for (char& b : bases) b = complement(b);
        }
        r.called = std::string(key) + bases;
    }

    // The sequencer's order of records has nothing to do with the assembly.
    std::vector<std::size_t> order(reads.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    for (std::size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);

    write_sff(prefix + ".sff", reads, order, flows, random);
    write_ace(prefix + ".ace", reads, contigs, consensus, random);
    return 0;
}
