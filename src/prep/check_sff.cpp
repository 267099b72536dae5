#include "prep/check_sff.h"

#include "prep/progress.h"
#include "prep/sff_merge.h"

namespace pelkrin::prep {
namespace {

std::string flow_chars_text(const std::string& chars) {
    if (chars.size() > 4 && chars.size() % 4 == 0) {
        bool repeated = true;
        for (std::size_t i = 4; i < chars.size() && repeated; ++i) repeated = chars[i] == chars[i % 4];
        if (repeated) return chars.substr(0, 4) + " repeated";
    }
    return chars;
}

void report_parts(const sff_layout& l, std::ostream& out) {
    for (std::size_t p = 0; p < l.parts.size(); ++p) {
        const sff_part& part = l.parts[p];
        if (l.parts.size() > 1) out << "  part " << p + 1 << ", at byte " << part.start << ":\n";
        out << "  byte order: " << (part.big_endian ? "big-endian" : "little-endian") << "\n";
        out << "  reads: " << part.announced_reads << " announced, " << part.reads_found << " found\n";
        out << "  flows per read: " << part.flows << "\n";
        out << "  flow characters: " << flow_chars_text(part.flow_chars) << "; key: " << part.key << "\n";
        out << "  index block: " << index_place_text(part.index);
        if (part.index != index_place::none)
            out << " (byte " << part.start + part.index_offset << ", " << part.index_length << " bytes)";
        out << "\n";
    }
}

// Indexes the file's reads; reports duplicate names. False when there are any.
bool index_names(checked_sffs& all, std::size_t i, std::ostream& out) {
    const checked_sff& f = all.files[i];
    const auto bytes = f.input->bytes();
    const std::size_t before = all.names.size();
    const std::size_t first = all.records.size();
    for (std::size_t r = 0; r < f.layout.records.size(); ++r) {
        all.names.set(std::string(f.layout.key(bytes, f.layout.records[r])),
                      static_cast<std::int64_t>(all.records.size() + 1));
        all.records.push_back(record_ref{i, r});
    }
    const std::uint64_t duplicates = before + f.layout.records.size() - all.names.size();
    if (duplicates == 0) {
        out << "  duplicate read names: none\n";
        return true;
    }
    // The first record that a later one of its name replaced.
    std::string_view first_duplicate;
    for (std::size_t r = 0; r < f.layout.records.size() && first_duplicate.empty(); ++r) {
        const std::string_view key = f.layout.key(bytes, f.layout.records[r]);
        if (all.names.position_of(key) != static_cast<std::int64_t>(first + r + 1)) first_duplicate = key;
    }
    out << "  problem: duplicate read names: " << duplicates << " (the first: " << first_duplicate << ")\n";
    return false;
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

checked_sffs check_sffs(const std::vector<std::string>& names, std::ostream& out, std::ostream& err) {
    checked_sffs all;
    all.ready = names.size() == 1;
    all.files.resize(names.size());
    std::size_t part_count = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        checked_sff& f = all.files[i];
        f.name = names[i];
        out << "SFF file " << f.name << "\n";
        try {
            auto input = std::make_unique<whole_input>(f.name, err);
            progress shown(err, "reading " + f.name, input->bytes().size(),
                           progress::shown_for(input->bytes().size()));
            f.layout = scan_sff(input->bytes(), f.name, &shown);
            f.input = std::move(input);
        } catch (const fatal_error& e) {
            out << "  problem: " << problem_text(e) << "\n";
            all.ready = false;
            continue;
        }
        part_count += f.layout.parts.size();
        if (f.input->gzipped()) {
            out << "  problem: compressed with gzip; Pelkrin reads plain SFF files only\n";
            all.ready = false;
        }
        report_parts(f.layout, out);
        if (!f.layout.stopped.empty()) {
            out << "  problem: byte " << f.layout.stopped_at << ": " << f.layout.stopped << "\n";
            all.ready = false;
        }
        all.ready = report_trailing(f.layout, out) && all.ready;
        all.ready = index_names(all, i, out) && all.ready;
    }
    if (names.size() > 1) out << "SFF files: " << names.size() << "; Pelkrin reads one, so they need merging\n";
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
