#include "prep_fixture.h"

#include <sstream>
#include <stdexcept>

#include "run_fixture.h"
#include "ace/ace_reader.h"
#include "files.h"
#include "lenient/ace_layout.h"
#include "prep/ace_rewrite.h"
#include "prep/string_output.h"
#include "sff/read_index.h"
#include "sff/reader.h"

#if defined(__SANITIZE_ADDRESS__)
#define PELKRIN_PREP_FIXTURE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PELKRIN_PREP_FIXTURE_SANITIZED 1
#endif
#endif

namespace pelkrin::test {

std::string with_crlf(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\n') out.push_back('\r');
        out.push_back(c);
    }
    return out;
}

std::string with_white_lines(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && i > 0 && text[i - 1] == '\n') out += " \t ";
        out.push_back(text[i]);
    }
    return out;
}

std::vector<contig> lenient_contigs(const std::string& text, std::string& repaired, bool keep_complete) {
    std::vector<contig> found;
    ace_options options;
    options.keep_complete = keep_complete;
    options.each_contig = [&](contig& c) { found.push_back(c); };
    const auto bytes = bytes_of(text);
    const ace_findings f = read_ace(bytes, "in.ace", options);
    prep::string_output out;
    prep::write_ace(bytes, f.edits, out);
    repaired = out.text();
    return found;
}

std::vector<contig> strict_contigs(const std::string& text) {
    std::ostringstream out;
    std::ostringstream err;
    aceReader reader("out.ace", text, console{out, err});
    std::vector<contig> found;
    for (;;) {
        contig c;
        if (!reader.next_contig(c)) break;
        found.push_back(std::move(c));
    }
    return found;
}

sff_fixture fixture_of(const std::string& sff_bytes) {
    std::ostringstream out;
    std::ostringstream err;
    reader r("in.sff", bytes_of(sff_bytes), console{out, err});
    r.get_header();
    sff_fixture f;
    f.big_endian = r.swap_bytes == 1;
    f.flows = r.header_p1.number_of_flows_per_read;
    f.flow_chars.assign(r.header_p2.flow_chars.begin(), r.header_p2.flow_chars.end());
    f.key.assign(r.header_p2.key_sequence.begin(), r.header_p2.key_sequence.end());
    while (r.get_next_read() == 1) {
        const sff_read& c = r.cur_read;
        sff_fixture_read x;
        x.name.assign(c.name.begin(), c.name.end());
        x.bases.assign(c.bases.begin(), c.bases.end());
        x.quals = c.quality_scores;
        x.flow_index = c.flow_index_per_base;
        x.flowgram = c.flowgram_values;
        x.clip_qual_left = c.clip_qual_left;
        x.clip_qual_right = c.clip_qual_right;
        x.clip_adapter_left = c.clip_adapter_left;
        x.clip_adapter_right = c.clip_adapter_right;
        f.reads.push_back(std::move(x));
    }
    return f;
}

program_result run_prep(const std::vector<std::string>& args, const std::filesystem::path& dir) {
    std::vector<std::string> argv{pelkrin_prep_binary()};
    argv.insert(argv.end(), args.begin(), args.end());
    run_limits limits;
    limits.seconds = 60;
    return run_program(argv, dir, limits);
}

program_result run_prep_bounded(const std::vector<std::string>& args, const std::filesystem::path& dir) {
    std::vector<std::string> argv{pelkrin_prep_binary()};
    argv.insert(argv.end(), args.begin(), args.end());
    run_limits limits;
    limits.seconds = 10;
#ifndef PELKRIN_PREP_FIXTURE_SANITIZED
    limits.address_space = std::uint64_t{1} << 30;
#endif
    return run_program(argv, dir, limits);
}

reads_entries entries_of(const std::string& reads_file) {
    reads_entries out;
    std::istringstream in(reads_file);
    std::string line;
    std::string contig_name;
    std::size_t per_read = 1;
    std::vector<std::string>* entry = nullptr;
    std::size_t left = 0;
    while (std::getline(in, line)) {
        if (left > 0) {
            entry->push_back(line);
            --left;
            continue;
        }
        if (!line.empty() && line[0] == '>') {
            const auto tab = line.find('\t');
            contig_name = line.substr(1, tab - 1);
            per_read = line.back() == '3' ? 3 : 1;
            out[contig_name];
            continue;
        }
        entry = &out[contig_name][line.substr(0, line.find('\t'))];
        left = per_read;
    }
    return out;
}

namespace {

template <typename T>
std::string joined(const std::vector<T>& values, std::size_t n) {
    std::string s;
    for (std::size_t i = 0; i < n && i < values.size(); ++i) {
        if (i > 0) s.push_back('\t');
        s += std::to_string(values[i]);
    }
    return s;
}

}  // namespace

std::map<std::string, std::vector<std::string>> sff_entries(const std::string& sff_bytes) {
    std::ostringstream out;
    std::ostringstream err;
    reader r("in.sff", bytes_of(sff_bytes), console{out, err});
    read_index index;
    r.build_read_index(index);
    std::map<std::string, std::vector<std::string>> entries;
    for (const auto& [name, pos] : index) {
        seqRead s;
        const sff_read& c = r.get_read(pos, s);
        entries[name] = {joined(s.quals, s.quals.size()), joined(s.flowIdx, s.flowIdx.size()),
                         joined(c.flowgram_values, c.numOfFlows)};
    }
    return entries;
}

std::string ace_of_reads(const std::vector<std::vector<std::string>>& contigs) {
    std::vector<std::string> blocks;
    for (std::size_t i = 0; i < contigs.size(); ++i)
        blocks.push_back(ace_contig(std::string("Contig").append(std::to_string(i + 1)), contigs[i]));
    return ace_file(blocks);
}

}  // namespace pelkrin::test
