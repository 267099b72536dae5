#include "lenient/ace_layout.h"

#include <algorithm>
#include <unordered_map>

#include "ace/blank.h"
#include "ace/line_scanner.h"
#include "common/fatal_error.h"
#include "lenient/file_label.h"
#include "lenient/ace_lines.h"
#include "lenient/base_segments.h"
#include "common/progress.h"

namespace pelkrin {
namespace {

std::string first_word(std::string_view text) {
    std::string word;
    line_scanner(text).word(word);
    return word;
}

bool opens_brace(const std::string& word) { return word.find('{') != std::string::npos; }

// One read of a contig as its AF line and RD record place it.
struct placed {
    std::string name;
    char direction = 0;
    std::int32_t pos = 0;
    std::int16_t len = 0;
    std::string seq;
    std::uint64_t padded_length = 0;
    std::int16_t align_start = 0;
    std::int16_t align_end = 0;
};

// A CO line that Pelkrin's reader reads as the lenient reading read the
// original, with the read count (and the segment count) of the contig as found.
std::string co_line(const contig& c, std::size_t reads) {
    return std::string("CO ").append(c.name).append(" ").append(std::to_string(c.base_num)).append(" ")
        .append(std::to_string(reads)).append(" ").append(std::to_string(c.seg_num))
        .append(c.uncomplemented == 1 ? " U\n" : " C\n");
}

class parser {
public:
    parser(std::span<const std::uint8_t> bytes, const std::string& name, const ace_options& options)
        : lines_(bytes), name_(name), options_(options) {}

    ace_findings run() {
        read_as_line();
        ace_line l;
        while (!stop_ && peek(l)) {
            if (l.text.empty()) {
                take(l);
                continue;
            }
            const std::string word = first_word(l.text);
            take(l);
            if (word == "CO") {
                contig_at(l);
            } else if (opens_brace(word)) {
                brace();
            } else {
                // Pelkrin's reader stops at any other record outside a contig.
                f_.stray.see(l.number);
                edit(l.number, ace_edit::drop);
            }
        }
        if (f_.malformed.empty() && (f_.as_counts_wrong() || dropped_ || as_trailing_)) {
            edit(f_.as_line, ace_edit::replace,
                 "AS " + std::to_string(f_.contigs) + " " + std::to_string(f_.reads) + "\n");
        }
        std::stable_sort(f_.edits.begin(), f_.edits.end(), [](const ace_edit& a, const ace_edit& b) {
            if (a.line != b.line) return a.line < b.line;
            return (a.what == ace_edit::insert_before) > (b.what == ace_edit::insert_before);
        });
        if (options_.shown != nullptr) options_.shown->finish();
        return std::move(f_);
    }

private:
    ace_lines lines_;
    const std::string& name_;
    const ace_options& options_;
    ace_findings f_;
    bool stop_ = false;
    bool dropped_ = false;
    bool as_trailing_ = false;  // the AS line holds more than its two numbers

    bool peek(ace_line& l) { return lines_.peek(l); }
    bool take(ace_line& l) {
        if (!lines_.next(l)) return false;
        if (l.had_cr) f_.cr_lf.see(l.number);
        if (l.was_white) f_.white_lines.see(l.number);
        f_.lines = l.number;
        if (options_.shown != nullptr && (l.number & 4095) == 0) options_.shown->at(lines_.offset());
        return true;
    }
    void edit(std::uint64_t line, ace_edit::kind what, std::string text = {}) {
        // A file of millions of stray lines would otherwise hold an edit for each.
        if (what == ace_edit::drop && !f_.edits.empty()) {
            ace_edit& last = f_.edits.back();
            if (last.what == ace_edit::drop && last.needed && last.line + last.lines == line) {
                ++last.lines;
                return;
            }
        }
        f_.edits.push_back(ace_edit{line, what, std::move(text)});
    }

    void read_as_line() {
        ace_line l;
        while (take(l)) {
            if (l.text.empty()) continue;
            line_scanner scan(l.text);
            std::string word;
            scan.word(word);
            if (word != "AS") break;
            f_.as_line = l.number;
            std::int32_t n = 0;
            if (scan.number(n)) f_.as_contigs = n;
            if (scan.number(n)) f_.as_reads = n;
            // Pelkrin's reader takes what follows the two numbers as a line of its own.
            const std::string_view rest = scan.rest();
            as_trailing_ = std::any_of(rest.begin(), rest.end(), [](char ch) { return !is_blank(ch); });
            if (as_trailing_) f_.stray.see(l.number);
            return;
        }
        throw fatal_error(1, file_label(options_.program, name_).append(": line ")
                                 .append(std::to_string(f_.lines == 0 ? 1 : f_.lines))
                                 .append(": not an ACE file: it does not begin with an AS line\n"));
    }

    // The lines up to the next empty one, which is taken too; false when the
    // file ended first. `text` gathers them, `length` counts their characters.
    bool block(std::string* text, std::uint64_t* length) {
        ace_line l;
        while (take(l)) {
            if (l.text.empty()) return true;
            if (text != nullptr) text->append(l.text);
            if (length != nullptr) *length += l.text.size();
        }
        return false;
    }

    // The rest of a brace block; false when the file ended before its "}".
    bool brace() {
        ace_line l;
        while (take(l)) {
            if (!l.text.empty() && l.text.front() == '}') return true;
        }
        return false;
    }

    void cut(const std::string& contig_name, std::uint64_t co_line_number) {
        ace_line l;
        while (take(l)) {
        }
        f_.cut_off = true;
        f_.cut_contig = contig_name;
        f_.cut_line = co_line_number;
        f_.cut_at_line = f_.lines;
        if (options_.keep_complete) {
            edit(co_line_number, ace_edit::drop_rest);
            dropped_ = true;
        }
        stop_ = true;
    }

    void malformed(std::uint64_t line, const std::string& contig_name, const std::string& what) {
        f_.malformed = "contig " + contig_name + ": " + what;
        f_.malformed_line = line;
        stop_ = true;
    }

    // A contig as the reading goes through its records.
    struct contig_state {
        contig c;
        std::uint64_t co_line = 0;
        std::int32_t announced_reads = 0;
        std::string consensus;
        std::uint64_t consensus_length = 0;
        enum { after_co, after_bq, in_af, in_bs, in_rd } stage = after_co;
        std::vector<placed> reads;  // one per AF line
        std::unordered_map<std::string, std::size_t> by_name;  // the last AF line of each name
        std::vector<std::uint64_t> blanks;  // empty lines since the last AF or BS line
        std::uint64_t last_af_line = 0;
        bool af_interrupted = false;  // a tag block came after AF lines
        bool bs_open = false;         // BS lines came, and no empty line after them yet
        bool make_segments = false;   // the contig has no BS record
        std::size_t rd_records = 0;
    };

    void contig_at(const ace_line& co) {
        contig_state k;
        k.co_line = co.number;
        line_scanner scan(co.text);
        std::string tag;
        scan.word(tag);
        scan.word(k.c.name);
        scan.number(k.c.base_num);
        scan.number(k.announced_reads);
        scan.number(k.c.seg_num);
        char direction = 0;
        if (scan.character(direction) && direction == 'U') k.c.uncomplemented = 1;
        if (k.c.name.empty()) return malformed(co.number, "(no name)", "a CO line without a contig name");
        if (!block(options_.sequences ? &k.consensus : nullptr, &k.consensus_length))
            return cut(k.c.name, co.number);

        ace_line l;
        while (!stop_ && peek(l)) {
            if (l.text.empty()) {
                take(l);
                if (k.stage == contig_state::in_af || k.stage == contig_state::in_bs) k.blanks.push_back(l.number);
                k.bs_open = false;
                continue;
            }
            const std::string word = first_word(l.text);
            if (word == "CO") break;
            if (k.bs_open && word != "BS") {
                // Pelkrin's reader takes the BS lines up to an empty line.
                f_.blank_after_bs.see(l.number, k.c.name);
                edit(l.number, ace_edit::insert_before, "\n");
                k.bs_open = false;
            }
            take(l);
            // Between two RD records Pelkrin's reader looks for the next RD line
            // only, tag blocks or not: so does this reading.
            if (k.stage == contig_state::in_rd && k.rd_records < k.reads.size() && word != "RD") continue;
            if (opens_brace(word)) {
                if (k.stage == contig_state::in_af) k.af_interrupted = true;
                if (!brace()) return cut(k.c.name, co.number);
            } else if (word == "BQ") {
                bq_record(k, l);
            } else if (word == "AF") {
                af_line(k, l);
            } else if (word == "BS") {
                bs_line(k, l);
            } else if (word == "RD") {
                rd_line(k, l);
            } else {
                // Pelkrin's reader stops at any other record.
                f_.stray.see(l.number, k.c.name);
                edit(l.number, ace_edit::drop);
            }
        }
        if (stop_) return;
        if (k.reads.empty() || k.rd_records < k.reads.size()) {
            if (!peek(l)) return cut(k.c.name, co.number);
            return malformed(co.number, k.c.name,
                             std::to_string(k.reads.size()) + " AF lines but " + std::to_string(k.rd_records) +
                                 " RD records");
        }
        finish_contig(k, co);
    }

    void bq_record(contig_state& k, const ace_line& l) {
        if (k.stage != contig_state::after_co) return malformed(l.number, k.c.name, "a BQ record after the AF lines");
        k.stage = contig_state::after_bq;
        if (!block(nullptr, nullptr)) cut(k.c.name, k.co_line);
    }

    void af_line(contig_state& k, const ace_line& l) {
        if (k.stage == contig_state::in_bs || k.stage == contig_state::in_rd)
            return malformed(l.number, k.c.name, "an AF line after the BS or RD records");
        if (k.stage == contig_state::after_co) {
            f_.no_base_qualities.see(l.number, k.c.name);
            edit(l.number, ace_edit::insert_before, "BQ\n\n");
        }
        if (k.stage == contig_state::in_af && k.af_interrupted)
            return malformed(l.number, k.c.name, "AF lines apart, with other records between them");
        join_lines(k.blanks, f_.split_af, k.c.name);
        k.stage = contig_state::in_af;
        k.last_af_line = l.number;
        line_scanner af(l.text);
        placed p;
        std::string tag;
        af.word(tag);
        af.word(p.name);
        af.character(p.direction);
        af.number(p.pos);
        // As in Pelkrin's reader, a later AF line of a name replaces the earlier.
        k.by_name.insert_or_assign(p.name, k.reads.size());
        k.reads.push_back(std::move(p));
    }

    void bs_line(contig_state& k, const ace_line& l) {
        if (k.stage != contig_state::in_af && k.stage != contig_state::in_bs)
            return malformed(l.number, k.c.name, "a BS line out of place (before the AF lines or among the RD records)");
        // Empty lines before the first BS line are passed over; between two they end the block.
        if (k.stage == contig_state::in_bs) join_lines(k.blanks, f_.blank_after_bs, k.c.name);
        k.blanks.clear();
        k.stage = contig_state::in_bs;
        k.bs_open = true;
    }

    void rd_line(contig_state& k, const ace_line& l) {
        if (k.stage == contig_state::after_co || k.stage == contig_state::after_bq)
            return malformed(l.number, k.c.name, "an RD record before the AF lines");
        if (k.stage == contig_state::in_af) {
            f_.no_base_segments.see(l.number, k.c.name);
            k.make_segments = true;
        }
        // Pelkrin's reader takes as many RD records as there are AF lines.
        if (k.rd_records == k.reads.size())
            return malformed(l.number, k.c.name,
                             "more RD records than its " + std::to_string(k.reads.size()) + " AF lines");
        k.stage = contig_state::in_rd;
        k.blanks.clear();
        if (rd_record(l, k)) ++k.rd_records;
    }

    // Empty lines between lines that Pelkrin's reader wants in a row are dropped.
    void join_lines(std::vector<std::uint64_t>& blanks, ace_sign& sign, const std::string& contig_name) {
        for (std::uint64_t b : blanks) {
            sign.see(b, contig_name);
            edit(b, ace_edit::drop);
        }
        blanks.clear();
    }

    // An RD record from its RD line to its DS line; false when the reading
    // stopped (the file ended, or the record makes no sense).
    bool rd_record(const ace_line& rd, contig_state& k) {
        const std::string& contig_name = k.c.name;
        const std::uint64_t co_number = k.co_line;
        std::vector<placed>& reads = k.reads;
        std::unordered_map<std::string, std::size_t>& by_name = k.by_name;
        line_scanner scan(rd.text);
        std::string tag;
        std::string read_name;
        scan.word(tag);
        scan.word(read_name);
        const auto found = by_name.find(read_name);
        if (found == by_name.end()) {
            malformed(rd.number, contig_name, "RD record of read " + read_name + ", which has no AF line");
            return false;
        }
        // A second RD record of a name replaces the first, as in Pelkrin's reader.
        placed& p = reads[found->second];
        p.seq.clear();
        p.padded_length = 0;
        scan.number(p.len);
        if (!block(options_.sequences && options_.reads_bases ? &p.seq : nullptr, &p.padded_length)) {
            cut(contig_name, co_number);
            return false;
        }
        ace_line l;
        do {
            if (!take(l)) {
                cut(contig_name, co_number);
                return false;
            }
        } while (l.text.empty());
        if (first_word(l.text) != "QA") {
            malformed(l.number, contig_name, "read " + read_name + " has no QA line after its bases");
            return false;
        }
        line_scanner qa(l.text);
        std::int32_t dropped = 0;
        qa.word(tag);
        qa.number(dropped);
        qa.number(dropped);
        qa.number(p.align_start);
        qa.number(p.align_end);
        const std::uint64_t qa_line = l.number;

        std::vector<std::uint64_t> blanks;
        while (peek(l) && l.text.empty()) {
            take(l);
            blanks.push_back(l.number);
        }
        if (peek(l) && first_word(l.text) == "DS") {
            if (!blanks.empty()) {
                f_.blank_before_ds.see(blanks.front(), contig_name);
                for (std::uint64_t b : blanks) edit(b, ace_edit::drop);
            }
            take(l);
        } else {
            // Pelkrin's reader passes over the line after the QA line: harmless when empty.
            const bool harmless = !blanks.empty() || !peek(l);
            (harmless ? f_.no_ds_harmless : f_.no_ds).see(qa_line, contig_name);
            edit(qa_line + 1, ace_edit::insert_before, "DS\n");
            f_.edits.back().needed = !harmless;
        }
        return true;
    }

    void finish_contig(contig_state& k, const ace_line& co) {
        contig& c = k.c;
        std::vector<placed>& reads = k.reads;
        const std::int32_t announced_reads = k.announced_reads;
        if (k.make_segments) {
            std::vector<placed_read> spans;
            spans.reserve(reads.size());
            for (const placed& p : reads) {
                const std::int64_t length = p.len > 0 ? p.len : static_cast<std::int64_t>(p.padded_length);
                spans.push_back({p.name, p.pos, p.pos + std::max<std::int64_t>(length, 1) - 1});
            }
            const auto cover = cover_consensus(static_cast<std::int64_t>(k.consensus_length), std::move(spans));
            edit(k.last_af_line + 1, ace_edit::insert_before, base_segment_lines(cover) + "\n");
            c.seg_num = static_cast<std::int32_t>(cover.size());
        }
        if (announced_reads != static_cast<std::int64_t>(reads.size())) f_.read_counts.see(co.number, c.name);
        if (k.make_segments || announced_reads != static_cast<std::int64_t>(reads.size()))
            edit(co.number, ace_edit::replace, co_line(c, reads.size()));
        ++f_.contigs;
        f_.reads += reads.size();
        if (!options_.each_contig) return;
        c.read_num = static_cast<std::int32_t>(reads.size());
        c.consensus.assign(k.consensus.begin(), k.consensus.end());
        for (placed& p : reads) {
            READ r;
            r.name = p.name;
            r.pos = p.pos;
            r.len = p.len;
            r.seq.assign(p.seq.begin(), p.seq.end());
            r.uncomplemented = p.direction == 'C' ? 0 : 1;
            r.align_start = p.align_start;
            r.align_end = p.align_end;
            c.reads.insert_or_assign(std::move(p.name), std::move(r));
        }
        options_.each_contig(c);
    }
};

}  // namespace

ace_findings read_ace(std::span<const std::uint8_t> bytes, const std::string& name, const ace_options& options) {
    return parser(bytes, name, options).run();
}

}  // namespace pelkrin
