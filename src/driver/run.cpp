#include "driver/run.h"

#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "ace/ace_reader.h"
#include "common/fatal_error.h"
#include "driver/contig_writer.h"
#include "driver/output_file.h"
#include "driver/texts.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

void check_opened(const output_file& out, const std::string& name) {
    if (out.failed()) throw fatal_error(1, "can not open file " + name + "\n");
}

void print_completion(const run_request& request, std::ostream& out) {
    out << "Done! Two output files are:\n" << std::endl;
    out << " Tavrin QDX file:\t" << request.index_file << std::endl;
    out << " Tavrin READS file:\t" << request.reads_file << std::endl;
    out << PRG << " (" << VERSION << ")\t" << AUTHORSHIP << std::endl << std::endl;
}

}  // namespace

int run(const run_request& request, console messages) {
    reader sff(request.sff_file, messages);
    // A header cut short is reported here and again by the index walk; the run
    // goes on, so that the outputs still name every read of the assembly.
    sff.get_header();
    aceReader ace(request.ace_file, messages);

    // Emptied on the writer's thread while this one builds the read index,
    // unless an output is also an input: that one is emptied now, as opening it would.
    output_file reads_out(request.reads_file, output_file::emptying::later);
    output_file index_out(request.index_file, output_file::emptying::later);
    check_opened(reads_out, request.reads_file);
    check_opened(index_out, request.index_file);
    for (output_file* out : {&reads_out, &index_out}) {
        if (out->same_file_as(request.ace_file)) out->empty_now();
        if (out->same_file_as(request.sff_file)) {
            out->empty_now();
            sff.sff_file.refresh();  // its mapping must not be read past the new end
        }
    }

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
    reads_out.close();
    index_out.close();
    print_completion(request, messages.out);
    return 0;
}

}  // namespace pelkrin
