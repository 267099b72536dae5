#pragma once
// Strict front-to-back reader of an ACE assembly file, one contig per call.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "contig.h"
#include "contig_names.h"
#include "../common/console.h"
#include "line_scanner.h"
#include "line_source.h"

namespace pelkrin {

class aceReader {
public:
    std::string file_name;  // empty: no file was ever opened
    line_source ace_in;
    int32_t contig_num = 0;  // as the AS line announces; 0 when closed
    int32_t read_total = 0;  // as the AS line announces; kept for callers only

    // No file open yet; `messages` takes the reader's reports that do not end the run.
    explicit aceReader(console messages = standard_console()) : messages_(messages) {}
    // Opens the file and reads its AS line; any failure throws fatal_error.
    explicit aceReader(std::string name, console messages = standard_console());
    // Reads `text` (which must outlive the reader) as the file named `name`.
    aceReader(std::string name, std::string_view text, console messages);
    aceReader(const aceReader&) = delete;
    aceReader& operator=(const aceReader&) = delete;

    // Closes any open file, then opens and checks `name` like the constructor.
    bool open_file(const char* name);
    void close_file();

    // Reads the next contig into `target`, which is never cleared first. True
    // when the contig was read up to its last RD record; false at the end of
    // input, when no file was opened, or when the file announced no contigs.
    bool next_contig(contig& target);
    // After next_contig returned false: true when the input ended inside a
    // contig, after its CO record; the contig's name, and whether its CO line
    // ended with a carriage return (a file with CR LF line ends has no blank
    // lines, so its first contig runs on to the end of the file).
    bool ended_inside_contig() const { return ended_inside_contig_; }
    const std::string& unfinished_contig() const { return begun_name_; }
    bool unfinished_contig_had_cr() const { return co_line_had_cr_; }
    // After next_contig returned false: true when the AS line announced no
    // contig, or its counts could not be read, and yet a later line of the
    // file begins with the word CO. Reads the rest of the file to find out;
    // reading contigs is over after it.
    bool holds_unannounced_contigs();
    // Reads the next contig as next_contig does, lines read and checked alike,
    // but keeps only what the reads file needs: its name and its reads' names
    // (the keys of contig::reads), passing over the bases. `target` is filled anew.
    bool next_contig_names(contig_names& target);
    // Appends up to `max_count` freshly read contigs; returns how many.
    int32_t next_contig(std::vector<contig>& out, int16_t max_count);

private:
    console messages_;
    bool contig_begun_ = false;         // this call has handled a CO record
    bool ended_inside_contig_ = false;
    std::string begun_name_;            // the name on the last CO line
    bool co_line_had_cr_ = false;
    bool header_unusable_ = false;      // the AS line announced no contig, or its counts failed
    bool unannounced_contigs_ = false;  // what holds_unannounced_contigs found
    // The contig's reads in the order of its AF lines, which is the order of
    // its RD records in most files: each RD record looks there first.
    std::vector<std::map<std::string, READ>::iterator> af_order_;

    // While next_contig_names reads a contig: where the names go, the names
    // of its AF lines in the file's order (one after another, and where each
    // ends), and the read its RD and QA lines are read into.
    contig_names* names_ = nullptr;
    std::string af_names_;
    std::vector<std::size_t> af_ends_;
    READ unkept_read_;

    void read_header();
    // The read an RD line names, from contig::reads or, names only, from the
    // AF names; throws when no AF line names it. `i` counts the RD lines from 1.
    READ& read_named(contig& target, const std::string& name, int32_t i);
    // Names only: the AF names, sorted and each once, into names_.
    void gather_names();
    bool read_contig(contig& target);
    // Both take the lines up to the next blank one and return false when the
    // input ended first; the second gathers them into `buffer`.
    bool skip_block();
    bool read_text_block(std::vector<char>& buffer);
    // The rest of a brace block; false when the input ended before its "}" line.
    bool skip_brace_block();
    // Returns false when the input ends before all AF lines were read.
    bool read_af_lines(contig& target, std::string_view first_line, std::string& tag);
    bool read_rd_section(contig& target, line_scanner& scanner, std::string& tag);
};

}  // namespace pelkrin
