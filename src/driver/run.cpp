#include "driver/run.h"

#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "ace/ace_reader.h"
#include "common/fatal_error.h"
#include "common/same_file.h"
#include "driver/contig_writer.h"
#include "driver/output_file.h"
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

void finish_output(output_file& out) {
    if (!out.finish()) throw fatal_error(1, "can not write file " + out.name() + "\n");
}

// What keeps the outputs from being complete, one message a line; empty when nothing does.
std::string incomplete_inputs(const run_request& request, const aceReader& ace, const reader& sff) {
    std::string problems;
    if (ace.ended_inside_contig()) {
        problems += "Error: the ACE file " + request.ace_file + " ends inside contig " + ace.unfinished_contig();
        if (ace.unfinished_contig_had_cr()) problems += " (its lines end with CR LF)";
        problems += "\n";
    }
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

    // Parsing and look-ups on this thread; decoding and writing on the writer's.
    // The writer leaves the SFF reader alone until it gets its first contig.
    // Declared after the outputs: when an error unwinds the run, the writer
    // finishes every contig handed over before they close.
    contig_writer writer(sff, reads_out, index_out, request.flowgram);

    // The only pass over all of the SFF file's records; after it, records are read by seeking.
    read_index index;
    sff.build_read_index(index);

    std::vector<std::string_view> names;
    while (true) {
        contig c;
        if (!ace.next_contig(c)) break;
        contig_writer::job j = contig_writer::job::of(c);
        // A name the SFF file lacks is decoded from offset 0, the index's default.
        names.clear();
        for (std::size_t i = 0; i < j.reads(); ++i) names.push_back(j.name(i));
        j.positions.resize(names.size());
        index.positions_of(names, j.positions);
        writer.add(std::move(j));
    }
    writer.finish();
    finish_output(reads_out);
    finish_output(index_out);
    const std::string problems = incomplete_inputs(request, ace, sff);
    if (!problems.empty()) throw fatal_error(1, problems);
    print_completion(request, messages.out);
    return 0;
}

}  // namespace pelkrin
