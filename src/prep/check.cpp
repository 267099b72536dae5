#include "prep/check.h"

#include <memory>
#include <sstream>
#include <string_view>

#include "common/fatal_error.h"
#include "prep/ace_layout.h"
#include "prep/base_match.h"
#include "prep/input_file.h"
#include "prep/progress.h"
#include "prep/sff_layout.h"
#include "prep/sff_merge.h"
#include "sff/read_index.h"

namespace pelkrin::prep {
namespace {

// A fatal error's text without its line end and the program's name.
std::string problem_text(const fatal_error& e) {
    std::string text = e.message();
    while (!text.empty() && text.back() == '\n') text.pop_back();
    const std::string_view prefix = "Pelkrin-prep: ";
    if (text.compare(0, prefix.size(), prefix) == 0) text.erase(0, prefix.size());
    return text;
}

std::string flow_chars_text(const std::string& chars) {
    if (chars.size() > 4 && chars.size() % 4 == 0) {
        bool repeated = true;
        for (std::size_t i = 4; i < chars.size() && repeated; ++i) repeated = chars[i] == chars[i % 4];
        if (repeated) return chars.substr(0, 4) + " repeated";
    }
    return chars;
}

struct sff_file {
    std::unique_ptr<input_file> input;
    sff_layout layout;
    bool read = false;
};

struct record_ref {
    std::size_t file;
    std::size_t record;
};

void sign_line(std::ostream& out, const ace_sign& s, const std::string& what, bool& problems) {
    if (!s.seen()) return;
    problems = true;
    out << "  problem: line " << s.first_line << ": " << what;
    if (!s.first_contig.empty()) out << " (contig " << s.first_contig << ")";
    if (s.count > 1) out << "; " << s.count << " in all";
    out << "\n";
}

}  // namespace

int run_check(const std::string& ace_name, const std::vector<std::string>& sff_names, std::ostream& out,
              std::ostream& err) {
    bool ace_ready = true;
    bool sff_ready = sff_names.size() == 1;
    bool cross_ready = true;

    // The SFF files first: the assembly's reads are looked up in them as the ACE file is read.
    std::vector<sff_file> sffs(sff_names.size());
    std::ostringstream sff_report;
    read_index names;
    std::vector<record_ref> records;
    for (std::size_t i = 0; i < sff_names.size(); ++i) {
        sff_file& s = sffs[i];
        sff_report << "SFF file " << sff_names[i] << "\n";
        try {
            s.input = std::make_unique<input_file>(sff_names[i], err);
            progress shown(err, "reading " + sff_names[i], s.input->bytes().size(),
                           progress::shown_for(s.input->bytes().size()));
            s.layout = scan_sff(s.input->bytes(), sff_names[i], &shown);
            s.read = true;
        } catch (const fatal_error& e) {
            sff_report << "  problem: " << problem_text(e) << "\n";
            sff_ready = false;
            continue;
        }
        const sff_layout& l = s.layout;
        const auto bytes = s.input->bytes();
        if (s.input->gzipped()) {
            sff_report << "  problem: compressed with gzip; Pelkrin reads plain SFF files only\n";
            sff_ready = false;
        }
        // A later record of a name replaces the earlier, as in Pelkrin's index;
        // the value is the record's number in `records` plus one.
        const std::size_t before = names.size();
        for (std::size_t r = 0; r < l.records.size(); ++r) {
            names.set(std::string(l.key(bytes, l.records[r])), static_cast<std::int64_t>(records.size() + 1));
            records.push_back(record_ref{i, r});
        }
        const std::uint64_t duplicates = before + l.records.size() - names.size();
        std::string first_duplicate;
        for (std::size_t r = 0; duplicates > 0 && r < l.records.size() && first_duplicate.empty(); ++r) {
            const std::string_view key = l.key(bytes, l.records[r]);
            const std::int64_t at = names.position_of(key);
            if (at != static_cast<std::int64_t>(records.size() - l.records.size() + r + 1)) first_duplicate = key;
        }
        for (std::size_t p = 0; p < l.parts.size(); ++p) {
            const sff_part& part = l.parts[p];
            if (l.parts.size() > 1) sff_report << "  part " << p + 1 << ", at byte " << part.start << ":\n";
            sff_report << "  byte order: " << (part.big_endian ? "big-endian" : "little-endian") << "\n";
            sff_report << "  reads: " << part.announced_reads << " announced, " << part.reads_found << " found\n";
            sff_report << "  flows per read: " << part.flows << "\n";
            sff_report << "  flow characters: " << flow_chars_text(part.flow_chars) << "; key: " << part.key << "\n";
            sff_report << "  index block: " << index_place_text(part.index);
            if (part.index != index_place::none)
                sff_report << " (byte " << part.start + part.index_offset << ", " << part.index_length << " bytes)";
            sff_report << "\n";
        }
        if (!l.stopped.empty()) {
            sff_report << "  problem: byte " << l.stopped_at << ": " << l.stopped << "\n";
            sff_ready = false;
        }
        if (l.parts.size() > 1) {
            sff_report << "  problem: data after the last read: " << l.parts.size() - 1
                       << " more SFF file(s) appended, the first at byte " << l.parts[1].start
                       << "; Pelkrin reads the first only\n";
            sff_ready = false;
        } else if (l.stray_bytes > 0) {
            sff_report << "  problem: data after the last read: " << l.stray_bytes << " bytes at byte "
                       << l.stray_offset << " that are no SFF file\n";
            sff_ready = false;
        } else {
            sff_report << "  data after the last read: none\n";
        }
        if (duplicates > 0) {
            sff_report << "  problem: duplicate read names: " << duplicates << " (the first: " << first_duplicate
                       << ")\n";
            sff_ready = false;
        } else {
            sff_report << "  duplicate read names: none\n";
        }
    }
    if (sff_names.size() > 1) {
        sff_report << "SFF files: " << sff_names.size() << "; Pelkrin reads one, so they need merging\n";
    }
    // Several SFF files, or several in one file: whether they can be merged.
    std::vector<sff_input> parts;
    std::size_t part_count = 0;
    for (std::size_t i = 0; i < sffs.size(); ++i) {
        if (!sffs[i].read) continue;
        parts.push_back(sff_input{sff_names[i], sffs[i].input->bytes(), sffs[i].layout});
        part_count += sffs[i].layout.parts.size();
    }
    if (part_count > 1) {
        try {
            plan_merge(parts);
        } catch (const fatal_error& e) {
            sff_report << "  problem: they cannot be merged: " << problem_text(e) << "\n";
            sff_ready = false;
        }
    }

    // The ACE file, each complete contig's reads checked against the SFF records.
    out << "ACE file " << ace_name << "\n";
    std::uint64_t missing = 0;
    std::uint64_t mismatched = 0;
    std::uint64_t found_reads = 0;  // reads of the assembly that an SFF file holds
    std::vector<std::string> missing_names;
    std::vector<std::string> mismatched_names;
    std::string scratch;
    try {
        input_file ace(ace_name, err);
        ace_options options;
        std::vector<std::string_view> read_names;
        std::vector<std::int64_t> found;
        options.each_contig = [&](contig& c) {
            // All of a contig's look-ups at once, so that their cache misses overlap.
            read_names.clear();
            for (const auto& entry : c.reads) read_names.push_back(entry.first);
            found.assign(read_names.size(), 0);
            names.positions_of(read_names, found);
            std::size_t k = 0;
            for (const auto& [name, read] : c.reads) {
                const std::int64_t at = found[k++];
                if (at == 0) {
                    if (missing++ < 10) missing_names.push_back(name);
                    continue;
                }
                ++found_reads;
                const record_ref ref = records[static_cast<std::size_t>(at - 1)];
                const sff_file& s = sffs[ref.file];
                const std::string_view bases = s.layout.bases(s.input->bytes(), s.layout.records[ref.record]);
                if (!bases_occur(std::string_view(read.seq.data(), read.seq.size()), bases, read.uncomplemented == 0,
                                 scratch)) {
                    if (mismatched++ < 10) mismatched_names.push_back(name);
                }
            }
        };
        progress shown(err, "reading " + ace_name, ace.bytes().size(), progress::shown_for(ace.bytes().size()));
        options.shown = &shown;
        const ace_findings f = read_ace(ace.bytes(), ace_name, options);

        std::vector<std::string> dialect;
        if (f.blank_before_ds.seen()) dialect.push_back("MIRA");
        if (f.no_base_segments.seen()) dialect.push_back("CAP3");
        if (dialect.empty())
            dialect.push_back(f.pelkrin_reads_alike() ? "the layout Pelkrin reads" : "near the layout Pelkrin reads");
        if (f.cr_lf.seen()) dialect.push_back("CR LF line ends");
        if (f.white_lines.seen()) dialect.push_back("lines of white space only");
        if (f.cut_off) dialect.push_back("cut off inside a contig");
        if (ace.gzipped()) dialect.push_back("gzip");
        out << "  dialect: ";
        for (std::size_t i = 0; i < dialect.size(); ++i) out << (i > 0 ? ", " : "") << dialect[i];
        out << "\n";

        bool problems = ace.gzipped();
        if (ace.gzipped()) out << "  problem: compressed with gzip; Pelkrin reads plain ACE files only\n";
        sign_line(out, f.cr_lf, "CR LF line ends", problems);
        sign_line(out, f.white_lines, "a line of white space only", problems);
        sign_line(out, f.blank_before_ds, "an empty line between a read's QA and DS lines (MIRA's layout)", problems);
        sign_line(out, f.no_base_segments, "a contig without BS records (CAP3's layout)", problems);
        sign_line(out, f.no_base_qualities, "a contig without a BQ record", problems);
        sign_line(out, f.no_ds, "a read without a DS line", problems);
        if (f.no_ds_harmless.seen())
            out << "  note: line " << f.no_ds_harmless.first_line << ": " << f.no_ds_harmless.count
                << " read(s) without a DS line, harmless to Pelkrin (an empty line follows)\n";
        sign_line(out, f.split_af, "an empty line among a contig's AF lines", problems);
        sign_line(out, f.blank_after_bs, "BS lines not ended by an empty line", problems);
        sign_line(out, f.read_counts, "a CO line whose read count is not its number of AF lines", problems);
        sign_line(out, f.stray, "a line Pelkrin's reader would stop at", problems);
        if (!f.malformed.empty()) {
            problems = true;
            out << "  problem: line " << f.malformed_line << ": " << f.malformed << "\n";
        }
        if (f.cut_off) {
            problems = true;
            out << "  problem: line " << f.cut_at_line << ": the file is cut off inside contig " << f.cut_contig
                << " (its CO line is line " << f.cut_line << ")\n";
        }
        if (f.malformed.empty() && f.as_counts_wrong()) {
            problems = true;
            out << "  problem: line " << f.as_line << ": the AS line announces ";
            if (f.as_contigs < 0) out << "no counts";
            else out << f.as_contigs << " contigs and " << f.as_reads << " reads";
            out << "; found " << f.contigs << " contigs and " << f.reads << " reads\n";
        }
        out << "  contigs: " << f.contigs << " complete, with " << f.reads << " reads\n";
        if (f.contigs == 0) {
            problems = true;
            out << "  problem: no complete contig\n";
        }
        ace_ready = !problems && f.pelkrin_reads_alike();
    } catch (const fatal_error& e) {
        out << "  problem: " << problem_text(e) << "\n";
        ace_ready = false;
    }

    out << sff_report.str();
    out << "Across the files\n";
    const auto listed = [&](const std::vector<std::string>& list, std::uint64_t n) {
        out << n;
        if (n == 0) return;
        out << " (" << (n > list.size() ? "the first ten: " : "");
        for (std::size_t i = 0; i < list.size(); ++i) out << (i > 0 ? " " : "") << list[i];
        out << ")";
    };
    out << "  reads of the assembly that no SFF file holds: ";
    listed(missing_names, missing);
    out << "\n  reads whose bases do not occur in their SFF record: ";
    listed(mismatched_names, mismatched);
    out << "\n";
    if (mismatched > 0 && mismatched * 2 >= found_reads)
        out << "  problem: most reads' bases differ from their SFF records: the sign of a wrong SFF file\n";
    else if (mismatched > 0)
        out << "  problem: some reads' bases differ from their SFF records (edited in the assembly, or records cut short)\n";
    if (missing > 0) out << "  problem: reads missing from the SFF file(s): Pelkrin writes placeholder entries for them\n";
    cross_ready = missing == 0 && mismatched == 0;

    if (ace_ready && sff_ready && cross_ready) {
        out << "Pelkrin will read this pair correctly as it stands.\n";
        return 0;
    }
    std::string steps;
    if (!ace_ready) steps += " Pelkrin-prep ace";
    if (!sff_ready) steps += std::string(steps.empty() ? "" : " and").append(" Pelkrin-prep sff");
    out << "Pelkrin will not read this pair correctly as it stands";
    if (!steps.empty() && cross_ready) out << ": repair it with" << steps;
    else if (!cross_ready) out << ": the SFF file(s) do not hold the assembly's reads";
    out << ".\n";
    return 1;
}

}  // namespace pelkrin::prep
