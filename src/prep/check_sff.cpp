#include "prep/check_sff.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "common/input_file.h"
#include "common/same_file.h"
#include "common/progress.h"
#include "prep/sff_merge.h"
#include "lenient/file_label.h"
#include "prep/program_name.h"

namespace pelkrin::prep {
namespace {

constexpr std::uint8_t gzip_magic[2] = {0x1f, 0x8b};

std::string flow_chars_text(const std::string& chars) {
    if (chars.size() > 4 && chars.size() % 4 == 0) {
        bool repeated = true;
        for (std::size_t i = 4; i < chars.size() && repeated; ++i) repeated = chars[i] == chars[i % 4];
        if (repeated) return chars.substr(0, 4) + " repeated";
    }
    return chars;
}

// The reads found, counted as Pelkrin's message on a cut file counts them: its
// walk counts a record whose read header lies whole, the one the file cuts
// short among them, except when that is the last record announced.
std::uint64_t reads_counted(const sff_part& part, bool& cut_one_counted) {
    cut_one_counted = part.cut_inside_read && part.reads_found + 1 < part.announced_reads;
    return part.reads_found + (cut_one_counted ? 1 : 0);
}

void report_parts(const sff_layout& l, std::ostream& out) {
    for (std::size_t p = 0; p < l.parts.size(); ++p) {
        const sff_part& part = l.parts[p];
        if (l.parts.size() > 1) out << "  part " << p + 1 << ", at byte " << part.start << ":\n";
        out << "  byte order: " << (part.big_endian ? "big-endian" : "little-endian") << "\n";
        bool cut_one_counted = false;
        const std::uint64_t found = reads_counted(part, cut_one_counted);
        out << "  reads: " << part.announced_reads << " announced, " << found << " found"
            << (cut_one_counted ? ", the last of them cut short" : "") << "\n";
        out << "  flows per read: " << part.flows << "\n";
        out << "  flow characters: " << flow_chars_text(part.flow_chars) << "; key: " << part.key << "\n";
        out << "  index block: " << index_place_text(part.index);
        if (part.index != index_place::none)
            out << " (byte " << part.start + part.index_offset << ", " << part.index_length << " bytes)";
        out << "\n";
    }
}

bool report_trailing(const sff_layout& l, std::ostream& out) {
    if (l.parts.size() > 1) {
        out << "  problem: data after the last read: " << l.parts.size() - 1
            << " more SFF file(s) appended, the first at byte " << l.parts[1].start << "; Pelkrin reads the first only\n";
        return false;
    }
    if (l.stray_bytes > 0) {
        out << "  problem: data after the last read: " << l.stray_bytes << " bytes at byte " << l.stray_offset
            << " that are no SFF file\n";
        return false;
    }
    out << "  data after the last read: none\n";
    return true;
}

// The earlier file of the list that `names[i]` names again, by its name or
// through another name or a link; no_file when none.
std::size_t given_before(const std::vector<std::string>& names, std::size_t i) {
    for (std::size_t j = 0; j < i; ++j)
        if (names[j] == names[i] || same_file(names[j], names[i])) return j;
    return checked_sff::no_file;
}

// Opens and walks one file, writing what it found to `out`; false when
// something stands in Pelkrin's way.
bool read_one(checked_sff& f, std::ostream& out, std::ostream& err) {
    input_file file;
    file.open(f.name, input_reading::by_position);
    f.refusal = refusal_on_opening(f.name, file);
    if (f.refusal.refused()) {
        out << "  problem: " << f.name << ": " << file.problem() << "\n";
        out << "  problem: Pelkrin refuses it: " << f.refusal.message << "\n";
        return false;
    }
    const std::uint64_t size = static_cast<std::uint64_t>(file.size());
    try {
        auto input = std::make_unique<whole_input>(f.name, std::move(file), err, program_name);
        const auto raw = input->bytes();
        f.refusal = refusal_of_contents(f.name, input->file_size(),
                                        input->gzipped() ? std::span<const std::uint8_t>(gzip_magic)
                                                         : raw.first(std::min<std::size_t>(4, raw.size())));
        f.input = std::move(input);
        progress shown(err, file_label(program_name, "reading " + f.name), f.input->bytes().size(), progress::shown_for(f.input->bytes().size()));
        f.layout = scan_sff(f.input->bytes(), f.name, &shown, program_name);
    } catch (const fatal_error& e) {
        // Opened and regular: the file's gzip data or its SFF header is damaged.
        if (!f.input) f.refusal = refusal_of_contents(f.name, size, gzip_magic);
        f.input.reset();
        out << "  problem: " << problem_text(e) << "\n";
        if (f.refusal.refused()) out << "  problem: Pelkrin refuses it: " << f.refusal.message << "\n";
        return false;
    }
    bool ready = true;
    if (f.input->gzipped()) {
        out << "  problem: compressed with gzip; Pelkrin reads plain SFF files only\n";
        out << "  problem: Pelkrin refuses it: " << f.refusal.message << "\n";
        ready = false;
    }
    report_parts(f.layout, out);
    if (!f.layout.stopped.empty()) {
        out << "  problem: byte " << f.layout.stopped_at << ": " << f.layout.stopped << "\n";
        ready = false;
    }
    return report_trailing(f.layout, out) && ready;
}

// A name that occurs in more than one record: how often, and the first.
struct duplicates {
    std::uint64_t count = 0;
    std::string_view first;
};

// Every record that a later record of its name replaces in the index, by the
// files of the two: within one file, or across two. Looked for only when
// there are any, which the index's size tells.
void find_duplicates(const checked_sffs& all, std::vector<duplicates>& within,
                     std::map<std::pair<std::size_t, std::size_t>, duplicates>& across) {
    within.assign(all.files.size(), duplicates{});
    if (all.names.size() == all.records.size()) return;
    for (std::size_t k = 0; k < all.records.size(); ++k) {
        const record_ref& ref = all.records[k];
        const checked_sff& f = all.files[ref.file];
        const std::string_view key = f.layout.key(f.input->bytes(), f.layout.records[ref.record]);
        const std::int64_t winner = all.names.position_of(key);
        if (winner == static_cast<std::int64_t>(k + 1)) continue;
        const std::size_t later = all.records[static_cast<std::size_t>(winner - 1)].file;
        duplicates& d = later == ref.file ? within[ref.file] : across[{ref.file, later}];
        if (d.count++ == 0) d.first = key;
    }
}

}  // namespace

std::string problem_text(const fatal_error& e) {
    std::string text = e.message();
    while (!text.empty() && text.back() == '\n') text.pop_back();
    const std::string_view prefix = "Pelkrin-prep: ";
    if (text.compare(0, prefix.size(), prefix) == 0) text.erase(0, prefix.size());
    return text;
}

std::string_view checked_sffs::bases(std::int64_t at) const {
    const record_ref ref = records[static_cast<std::size_t>(at - 1)];
    const checked_sff& f = files[ref.file];
    return f.layout.bases(f.input->bytes(), f.layout.records[ref.record]);
}

bool checked_sffs::any_read() const {
    for (const checked_sff& f : files)
        if (f.input) return true;
    return false;
}

checked_sffs check_sffs(const std::vector<std::string>& names, std::ostream& out, std::ostream& err) {
    checked_sffs all;
    all.ready = names.size() == 1;
    all.files.resize(names.size());
    // Each file's section waits for its duplicate names, known once every file is indexed.
    std::vector<std::string> sections(names.size());
    std::size_t part_count = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        checked_sff& f = all.files[i];
        f.name = names[i];
        std::ostringstream section;
        f.same_as = given_before(names, i);
        if (f.same_as != checked_sff::no_file) {
            section << "  problem: the same file as " << names[f.same_as] << ", given twice\n";
            all.ready = false;
        } else {
            all.ready = read_one(f, section, err) && all.ready;
        }
        sections[i] = section.str();
        if (!f.input) continue;
        part_count += f.layout.parts.size();
        all.records.reserve(all.records.size() + f.layout.records.size());
        const auto bytes = f.input->bytes();
        for (std::size_t r = 0; r < f.layout.records.size(); ++r) {
            all.names.set(std::string(f.layout.key(bytes, f.layout.records[r])),
                          static_cast<std::int64_t>(all.records.size() + 1));
            all.records.push_back(record_ref{i, r});
        }
    }
    std::vector<duplicates> within;
    std::map<std::pair<std::size_t, std::size_t>, duplicates> across;
    find_duplicates(all, within, across);
    for (std::size_t i = 0; i < names.size(); ++i) {
        out << "SFF file " << names[i] << "\n" << sections[i];
        if (!all.files[i].input) continue;
        if (within[i].count == 0) {
            out << "  duplicate read names: none\n";
            continue;
        }
        out << "  problem: duplicate read names: " << within[i].count << " (the first: " << within[i].first << ")\n";
        all.ready = false;
    }
    if (names.size() > 1) out << "SFF files: " << names.size() << "; Pelkrin reads one, so they need merging\n";
    for (const auto& [files, d] : across) {
        out << "  problem: read names in both " << names[files.first] << " and " << names[files.second] << ": "
            << d.count << " (the first: " << d.first << "); a merge keeps the records of " << names[files.second]
            << "\n";
    }
    // Several SFF files, or several in one file: whether they can be merged.
    if (part_count > 1) {
        std::vector<sff_input> parts;
        for (const checked_sff& f : all.files)
            if (f.input) parts.push_back(sff_input{f.name, f.input->bytes(), f.layout});
        try {
            plan_merge_header(parts);
        } catch (const fatal_error& e) {
            out << "  problem: they cannot be merged: " << problem_text(e) << "\n";
            all.ready = false;
        }
    }
    return all;
}

}  // namespace pelkrin::prep
