#include "driver/run.h"

#include <exception>
#include <ostream>

#include "ace/ace_reader.h"
#include "ace/reading_end.h"
#include "common/fatal_error.h"
#include "common/same_file.h"
#include "driver/contig_feed.h"
#include "driver/entry_formatter.h"
#include "common/output_file.h"
#include "reads_format/reads_writer.h"
#include "driver/texts.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

// An output that is one of the inputs (by name, hard link or symbolic link)
// would be destroyed before it is read.
void refuse_to_overwrite_inputs(const run_request& request) {
    for (const std::string* output : {&request.reads_file, &request.index_file}) {
        for (const std::string* input : {&request.ace_file, &request.sff_file}) {
            if (same_file(*output, *input)) {
                throw fatal_error(1, would_overwrite(*output, *input) + "\n");
            }
        }
    }
}

void check_opened(const output_file& out) {
    if (out.failed_to_open()) throw fatal_error(1, "can not open file " + out.name() + "\n");
}

// A write that failed leaves nothing a user wants: both files written are
// removed, and the pair of an earlier run stays as it was.
[[noreturn]] void cannot_write(const output_file& failed, output_file& reads_out, output_file& index_out) {
    const std::string name = failed.name();
    reads_out.discard();
    index_out.discard();
    throw fatal_error(1, "can not write file " + name + "\n");
}

// Every contig's header and index lines, and the entries formatted for it. The
// reads file's buffers come formatted; writing them here leaves the files as
// writing each piece here would have: the same bytes, a failed write noticed
// as each contig ends, what was buffered then still written.
void write_entries(entry_formatter& formatter, output_file& reads_out, output_file& index_out,
                   std::int32_t linesPerRead) {
    text_batch batch;
    while (true) {
        formatter.next(batch);
        for (const text_batch::mark& m : batch.marks) {
            if (m.contig_start) {
                write_index_line(index_out, m.name, reads_out.position_at(m.offset), m.reads, linesPerRead);
            } else if (reads_out.write_failed() || index_out.write_failed()) {
                reads_out.write_handed(batch.text.data(), m.at);
                for (const output_file* out : {&reads_out, &index_out}) {
                    if (out->write_failed()) cannot_write(*out, reads_out, index_out);
                }
            }
        }
        reads_out.write_handed(batch.text.data(), batch.used);
        if (batch.error) std::rethrow_exception(batch.error);
        if (batch.last) return;
    }
}

// Both files are put in place only once both are whole.
void finish_outputs(output_file& reads_out, output_file& index_out) {
    for (output_file* out : {&reads_out, &index_out}) {
        if (!out->finish_writing()) cannot_write(*out, reads_out, index_out);
    }
    for (output_file* out : {&reads_out, &index_out}) {
        if (!out->finish()) cannot_write(*out, reads_out, index_out);
    }
}

// What keeps the outputs from being complete, one message a line; empty when nothing does.
std::string incomplete_inputs(const run_request& request, aceReader& ace, const reader& sff) {
    // The ACE file's messages come first.
    std::string problems = incomplete_reading(ace);
    if (!sff.walk_complete()) {
        // A walk that found every record counted the last one, which the file cut short.
        const std::uint64_t found = sff.read_count >= sff.header_p1.number_of_reads && sff.read_count > 0
                                        ? static_cast<std::uint64_t>(sff.read_count) - 1
                                        : static_cast<std::uint64_t>(sff.read_count);
        problems += "Error: the SFF file " + request.sff_file + " ends after " + std::to_string(found) + " of its " +
                    std::to_string(sff.header_p1.number_of_reads) + " reads\n";
    }
    return problems;
}

void print_completion(const run_request& request, std::ostream& out) {
    out << "Done! Two output files are:\n" << std::endl;
    out << " Tavrin QDX file:\t" << request.index_file << std::endl;
    out << " Tavrin READS file:\t" << request.reads_file << std::endl;
    out << PRG << " (" << VERSION << ")\t" << AUTHORSHIP << std::endl << std::endl;
    if (!out) throw fatal_error(1, "can not write standard output\n");
}

}  // namespace

int run(const run_request& request, console messages) {
    reader sff(request.sff_file, messages);
    // Nothing can be read at a position of a pipe, a directory or a device.
    if (!sff.is_regular_file()) {
        throw fatal_error(1, "Error: the SFF file " + request.sff_file + " is not a regular file\n");
    }
    // A header cut short has been reported: the reads cannot be found.
    if (sff.get_header() == 0) throw fatal_error(1, "");
    aceReader ace(request.ace_file, messages);

    refuse_to_overwrite_inputs(request);
    output_file reads_out(request.reads_file);
    output_file index_out(request.index_file);
    check_opened(reads_out);
    check_opened(index_out);

    // The assembly is read on a thread of its own from here on, while this
    // thread indexes the SFF file. Only the reads' names are needed.
    contig_feed feed(ace);
    // The only pass over all of the SFF file's records; after it, records are
    // read where the index says.
    read_index index;
    sff.build_read_index(index);
    sff.check_unchanged();
    // Reads are decoded and their entries formatted on another thread; this
    // one writes them.
    entry_formatter formatter(feed, sff, index, request.flowgram);
    try {
        write_entries(formatter, reads_out, index_out, request.flowgram ? 3 : 1);
    } catch (...) {
        // An error in the inputs leaves what was written, unless a write
        // failed before it was noticed: then neither file is worth keeping.
        if (reads_out.write_failed() || index_out.write_failed()) {
            reads_out.discard();
            index_out.discard();
        }
        throw;
    }
    finish_outputs(reads_out, index_out);
    const std::string problems = incomplete_inputs(request, ace, sff);
    if (!problems.empty()) throw fatal_error(1, problems);
    print_completion(request, messages.out);
    return 0;
}

}  // namespace pelkrin
