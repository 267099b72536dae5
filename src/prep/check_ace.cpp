#include "prep/check_ace.h"

#include <vector>

#include "common/fatal_error.h"
#include "lenient/ace_layout.h"
#include "prep/check_sff.h"
#include "lenient/whole_input.h"
#include "common/progress.h"
#include "lenient/file_label.h"
#include "prep/program_name.h"

namespace pelkrin::prep {
namespace {

void sign_line(std::ostream& out, const ace_sign& s, const std::string& what, bool& problems) {
    if (!s.seen()) return;
    problems = true;
    out << "  problem: line " << s.first_line << ": " << what;
    if (!s.first_contig.empty()) out << " (contig " << s.first_contig << ")";
    if (s.count > 1) out << "; " << s.count << " in all";
    out << "\n";
}

void write_dialect(const ace_findings& f, bool gzipped, std::ostream& out) {
    std::vector<std::string> dialect;
    if (f.blank_before_ds.seen()) dialect.push_back("MIRA");
    if (f.no_base_segments.seen()) dialect.push_back("CAP3");
    if (dialect.empty())
        dialect.push_back(f.pelkrin_reads_alike() ? "the layout Pelkrin reads" : "near the layout Pelkrin reads");
    if (f.cr_lf.seen()) dialect.push_back("CR LF line ends");
    if (f.white_lines.seen()) dialect.push_back("lines of white space only");
    if (f.cut_off) dialect.push_back("cut off inside a contig");
    if (gzipped) dialect.push_back("gzip");
    out << "  dialect: ";
    for (std::size_t i = 0; i < dialect.size(); ++i) out << (i > 0 ? ", " : "") << dialect[i];
    out << "\n";
}

// The problems found; true when there are any.
bool write_problems(const ace_findings& f, bool gzipped, std::ostream& out) {
    bool problems = gzipped;
    if (gzipped) out << "  problem: compressed with gzip; Pelkrin reads plain ACE files only\n";
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
    return problems;
}

}  // namespace

ace_verdict check_ace(const std::string& name, const std::function<void(contig&)>& each_contig, std::ostream& out,
                      std::ostream& err) {
    out << "ACE file " << name << "\n";
    try {
        whole_input ace(name, err, program_name);
        ace_options options;
        options.program = program_name;
        options.each_contig = each_contig;
        progress shown(err, file_label(program_name, "reading " + name), ace.bytes().size(), progress::shown_for(ace.bytes().size()));
        options.shown = &shown;
        const ace_findings f = read_ace(ace.bytes(), name, options);
        write_dialect(f, ace.gzipped(), out);
        const bool problems = write_problems(f, ace.gzipped(), out);
        return {!problems && f.pelkrin_reads_alike(), {}};
    } catch (const fatal_error& e) {
        const std::string text = problem_text(e);
        out << "  problem: " << text << "\n";
        // The reason without the file's name, which the verdict gives.
        const std::string named = name + ": ";
        return {false, text.compare(0, named.size(), named) == 0 ? text.substr(named.size()) : text};
    }
}

}  // namespace pelkrin::prep
