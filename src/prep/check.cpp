#include "prep/check.h"

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "prep/base_match.h"
#include "prep/check_ace.h"
#include "prep/check_sff.h"

namespace pelkrin::prep {
namespace {

// The assembly's reads against the SFF records: missing, and whose bases differ.
struct cross_check {
    std::uint64_t found = 0;
    std::uint64_t missing = 0;
    std::uint64_t mismatched = 0;
    std::vector<std::string> missing_names;  // the first ten
    std::vector<std::string> mismatched_names;

    bool ready() const { return missing == 0 && mismatched == 0; }
};

void write_count(std::ostream& out, const std::vector<std::string>& list, std::uint64_t n) {
    out << n;
    if (n == 0) return;
    out << " (" << (n > list.size() ? "the first ten: " : "");
    for (std::size_t i = 0; i < list.size(); ++i) out << (i > 0 ? " " : "") << list[i];
    out << ")";
}

void write_cross(const cross_check& c, const checked_sffs& sffs, std::ostream& out) {
    out << "Across the files\n";
    if (!sffs.any_read()) {
        out << "  the assembly's reads were not looked for: no SFF file could be read\n";
        return;
    }
    out << "  reads of the assembly that no SFF file holds: ";
    write_count(out, c.missing_names, c.missing);
    out << "\n  reads whose bases do not occur in their SFF record: ";
    write_count(out, c.mismatched_names, c.mismatched);
    out << "\n";
    if (c.mismatched > 0 && c.mismatched * 2 >= c.found)
        out << "  problem: most reads' bases differ from their SFF records: the sign of a wrong SFF file\n";
    else if (c.mismatched > 0)
        out << "  problem: some reads' bases differ from their SFF records (edited in the assembly, or records cut "
               "short)\n";
    // Pelkrin writes a placeholder entry for a read its SFF file lacks, when it runs at all.
    if (c.missing > 0 && sffs.pelkrin_runs())
        out << "  problem: reads missing from the SFF file(s): Pelkrin writes placeholder entries for them\n";
    else if (c.missing > 0)
        out << "  problem: reads missing from the SFF file(s) that could be read\n";
}

// What keeps Pelkrin from reading the pair at all, whatever is repaired: an
// ACE file it cannot read, each SFF file it refuses, and why; a file given twice.
std::vector<std::string> blockers(const std::string& ace_name, const ace_verdict& ace, const checked_sffs& sffs) {
    std::vector<std::string> found;
    if (!ace.cannot_read.empty())
        found.push_back("the ACE file " + ace_name + " cannot be read (" + ace.cannot_read + ")");
    for (const checked_sff& f : sffs.files) {
        if (f.same_as != checked_sff::no_file)
            found.push_back("the SFF file " + f.name + " is " + sffs.files[f.same_as].name +
                            " given again (give each file once)");
        else if (f.refusal.refused())
            found.push_back("it refuses the SFF file " + f.name + " (" + f.refusal.reason + ")");
    }
    return found;
}

}  // namespace

int run_check(const std::string& ace_name, const std::vector<std::string>& sff_names, std::ostream& out,
              std::ostream& err) {
    // The SFF files first, reported after the ACE file: the assembly's reads
    // are looked up in them as the ACE file is read.
    std::ostringstream sff_report;
    const checked_sffs sffs = check_sffs(sff_names, sff_report, err);

    cross_check cross;
    match_scratch scratch;
    std::vector<std::string_view> read_names;
    std::vector<std::int64_t> found;
    std::vector<std::string_view> bases;
    const auto each_contig = [&](contig& c) {
        // All of a contig's look-ups at once, so that their cache misses overlap.
        read_names.clear();
        for (const auto& entry : c.reads) read_names.push_back(entry.first);
        found.assign(read_names.size(), 0);
        sffs.names.positions_of(read_names, found);
        // The records' bases lie scattered over the SFF file: ask for all of
        // them ahead, so that their cache misses overlap too.
        bases.clear();
        for (const std::int64_t at : found) {
            bases.push_back(at == 0 ? std::string_view() : sffs.bases(at));
            const std::string_view b = bases.back();
            for (std::size_t line = 0; line < b.size(); line += 64) __builtin_prefetch(b.data() + line);
        }
        std::size_t k = 0;
        for (const auto& [name, read] : c.reads) {
            const std::int64_t at = found[k];
            const std::string_view record = bases[k++];
            if (at == 0) {
                if (cross.missing++ < 10) cross.missing_names.push_back(name);
                continue;
            }
            ++cross.found;
            const std::string_view seq(read.seq.data(), read.seq.size());
            if (!bases_occur(seq, record, read.uncomplemented == 0, scratch) && cross.mismatched++ < 10)
                cross.mismatched_names.push_back(name);
        }
    };
    const ace_verdict ace = check_ace(ace_name, each_contig, out, err);
    const bool ace_ready = ace.ready;
    out << sff_report.str();
    write_cross(cross, sffs, out);

    if (ace_ready && sffs.ready && cross.ready()) {
        out << "Pelkrin will read this pair correctly as it stands.\n";
        return 0;
    }
    const std::vector<std::string> blocking = blockers(ace_name, ace, sffs);
    if (!blocking.empty()) {
        out << "Pelkrin will not read this pair correctly as it stands: ";
        for (std::size_t i = 0; i < blocking.size(); ++i) out << (i > 0 ? "; " : "") << blocking[i];
        out << ".\n";
        return 1;
    }
    std::string steps;
    if (!ace_ready) steps += " Pelkrin-prep ace";
    if (!sffs.ready) steps += std::string(steps.empty() ? "" : " and").append(" Pelkrin-prep sff");
    out << "Pelkrin will not read this pair correctly as it stands";
    if (!cross.ready()) out << ": the SFF file(s) do not hold the assembly's reads";
    else if (!steps.empty()) out << ": repair it with" << steps;
    out << ".\n";
    return 1;
}

}  // namespace pelkrin::prep
