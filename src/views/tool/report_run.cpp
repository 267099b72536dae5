#include "views/tool/report_run.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "ace/ace_reader.h"
#include "driver/command_line.h"
#include "views/qdx_index.h"
#include "views/tool/report_assets.h"
#include "views/tool/report_contig_data.h"
#include "views/tool/report_files.h"
#include "views/tool/report_flowgrams.h"
#include "views/tool/report_pages.h"
#include "views/tool/report_summary.h"

namespace pelkrin {
namespace {

constexpr std::size_t depth_bins = 1000;
constexpr std::size_t reads_per_flowgram_file = 250;

using file_closer = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Pelkrin's outputs for this ACE file, found as the viewer finds them:
// PREFIX.qdx, and through it PREFIX.reads.
struct reads_source {
    std::vector<qdx_entry> entries;
    std::vector<int64_t> offsets;  // of the entries, sorted, to find where a block ends
    file_closer reads{nullptr, std::fclose};
    std::string note;  // why there are no flowgrams, when there are none

    explicit reads_source(const std::string& ace_file) {
        const std::string prefix = output_prefix(ace_file);
        const std::string index_name = prefix + ".qdx";
        file_closer index(std::fopen(index_name.c_str(), "rb"), std::fclose);
        if (!index) {
            note = "No flowgrams: there is no " + index_name + " beside the ACE file (run Pelkrin -f on it).";
            return;
        }
        const std::string text = read_file_range(index.get(), 0, -1);
        entries = parse_qdx(text);
        reads.reset(std::fopen((prefix + ".reads").c_str(), "rb"));
        if (!reads) {
            note = "No flowgrams: " + prefix + ".reads can not be read.";
            entries.clear();
            return;
        }
        for (const qdx_entry& e : entries) offsets.push_back(e.offset);
        std::sort(offsets.begin(), offsets.end());
    }

    // The contig's flowgrams, read from its part of the reads file only.
    contig_flowgrams flowgrams(const contig& c, std::size_t ordinal) {
        if (!reads) return no_flowgrams(c, note);
        const qdx_entry* entry = find_qdx_entry(entries, ordinal, c.name);
        if (!entry) return no_flowgrams(c, "No flowgrams: the location index has no entry for this contig.");
        const auto next = std::upper_bound(offsets.begin(), offsets.end(), entry->offset);
        const int64_t end = next == offsets.end() ? -1 : *next;
        const std::string block = read_file_range(reads.get(), entry->offset, end);
        return contig_flowgram_files(c, block, *entry, reads_per_flowgram_file);
    }
};

}  // namespace

void write_report(const std::string& ace_file, const std::string& folder_name, const colour_map& colours,
                  console messages) {
    const std::filesystem::path folder(folder_name);
    aceReader reader(ace_file, messages);
    make_report_folder(folder);
    reads_source source(ace_file);
    write_report_file(folder, "pelkrin-report.css", report_style());
    write_report_file(folder, "pelkrin-report.js", report_script());

    std::vector<contig_summary> summaries;
    // The pages link to their neighbours, so a page is written once the next
    // contig is known to exist (or not).
    std::optional<contig_summary> waiting;
    auto write_page = [&](const contig_summary& s, std::size_t ordinal, std::size_t count) {
        write_report_file(folder, contig_file_stem(ordinal) + ".html", contig_page(s, ordinal, count, ace_file));
    };
    for (std::size_t ordinal = 1;; ++ordinal) {
        contig c;
        if (!reader.next_contig(c)) break;
        contig_summary s = summarise_contig(c, depth_bins);
        const contig_flowgrams flowgrams = source.flowgrams(c, ordinal - 1);
        const std::string stem = contig_file_stem(ordinal);
        for (std::size_t k = 0; k < flowgrams.files.size(); ++k) {
            write_report_file(folder, stem + "-flowgrams-" + std::to_string(k) + ".js", flowgrams.files[k]);
        }
        write_report_file(folder, stem + ".js", contig_data_js(c, colours, flowgrams.places));
        if (waiting) write_page(*waiting, ordinal - 1, ordinal);
        s.depth_bins.shrink_to_fit();
        waiting = s;
        summaries.push_back(std::move(s));
        summaries.back().depth_bins.clear();
        summaries.back().depth_bins.shrink_to_fit();
    }
    if (waiting) write_page(*waiting, summaries.size(), summaries.size());
    write_report_file(folder, "index.html", index_page(summaries, ace_file));
    messages.out << "Pelkrin-view: report of " << summaries.size() << " contigs written to "
                 << (folder / "index.html").string() << std::endl;
}

}  // namespace pelkrin
