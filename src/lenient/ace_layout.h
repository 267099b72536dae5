#pragma once
// A lenient reading of an ACE file of any of the usual dialects (the layout
// Pelkrin reads, MIRA's, CAP3's, CR LF line ends, lines of white space only,
// a file cut off inside a contig), and the edits that turn it into the
// layout Pelkrin reads. The edits change only what Pelkrin's reader would
// misread; every other line is kept as it is.
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "ace/contig.h"

namespace pelkrin {

class progress;

// A change to the file's lines.
struct ace_edit {
    enum kind { insert_before, replace, drop, drop_rest };
    std::uint64_t line = 0;  // 1-based; one past the last line inserts at the end
    kind what = insert_before;
    std::string text;  // inserted or replacing lines, each ended by a line feed
    std::uint64_t lines = 1;  // for a drop: the lines dropped from `line` on (a run of stray lines is one edit)
    // False for an edit Pelkrin's reader does not need (a DS line where the
    // line after the QA line, which it passes over, is empty anyway).
    bool needed = true;
};

// A departure from Pelkrin's layout: where it was first seen and how often.
struct ace_sign {
    std::uint64_t first_line = 0;
    std::uint64_t count = 0;
    std::string first_contig;  // the contig it was first seen in, where it was in one

    void see(std::uint64_t line, const std::string& contig = {}) {
        if (count++ == 0) {
            first_line = line;
            first_contig = contig;
        }
    }
    bool seen() const { return count > 0; }
};

struct ace_findings {
    std::uint64_t lines = 0;
    // The AS line as found (its numbers -1 when it lacks them).
    std::uint64_t as_line = 0;
    std::int64_t as_contigs = -1;
    std::int64_t as_reads = -1;
    // Complete contigs, and their reads (AF lines), as written.
    std::uint64_t contigs = 0;
    std::uint64_t reads = 0;

    ace_sign cr_lf;              // line ends of CR LF
    ace_sign white_lines;        // lines of white space only
    ace_sign blank_before_ds;    // blank lines between QA and DS (MIRA)
    ace_sign no_base_segments;   // contigs without BS records (CAP3)
    ace_sign no_base_qualities;  // contigs without a BQ record
    ace_sign no_ds;              // reads without a DS line, followed by a line Pelkrin's reader would miss
    ace_sign no_ds_harmless;     // reads without a DS line, followed by an empty line or the end
    ace_sign split_af;           // blank lines between a contig's AF lines
    ace_sign stray;              // lines Pelkrin's reader would stop at, dropped
    ace_sign read_counts;        // CO lines whose read count is not the AF lines'
    ace_sign blank_after_bs;     // BS records followed by no blank line

    // The file ends inside a contig: its name and its CO line.
    bool cut_off = false;
    std::string cut_contig;
    std::uint64_t cut_line = 0;
    std::uint64_t cut_at_line = 0;  // the last line

    // A contig that no reading makes sense of: what is wrong, and where.
    std::string malformed;
    std::uint64_t malformed_line = 0;

    std::vector<ace_edit> edits;  // in line order

    // Pelkrin's reader reads the file as the lenient reading does.
    bool pelkrin_reads_alike() const {
        if (cr_lf.seen() || white_lines.seen() || cut_off || !malformed.empty() || contigs == 0) return false;
        for (const ace_edit& e : edits)
            if (e.needed) return false;
        return true;
    }

    bool as_counts_wrong() const {
        return as_contigs != static_cast<std::int64_t>(contigs) || as_reads != static_cast<std::int64_t>(reads);
    }
};

struct ace_options {
    // The program whose messages name the file (file_label.h); none when empty.
    std::string program;
    // Drop a contig the file is cut off in, rather than only noting it.
    bool keep_complete = false;
    // Called with each complete contig as the lenient reading finds it, in
    // the file's order, with its consensus and reads' bases when `sequences`.
    std::function<void(contig&)> each_contig;
    bool sequences = true;
    // With `sequences`: the reads' bases too; false gives the consensus alone.
    bool reads_bases = true;
    progress* shown = nullptr;
};

// Reads the whole file. Throws fatal_error (status 1) naming `name` when the
// file does not begin with an AS line.
ace_findings read_ace(std::span<const std::uint8_t> bytes, const std::string& name, const ace_options& options);

}  // namespace pelkrin
