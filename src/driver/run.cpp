#include "driver/run.h"

#include <iostream>
#include <utility>

#include "ace/ace_reader.h"
#include "common/end_process.h"
#include "driver/contig_writer.h"
#include "driver/output_file.h"
#include "driver/texts.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

void check_opened(const output_file& out, const std::string& name) {
    if (out.failed()) {
        std::cerr << "can not open file " << name << std::endl;
        end_process(1);
    }
}

void print_completion(const run_request& request) {
    std::cout << "Done! Two output files are:\n" << std::endl;
    std::cout << " Tavrin QDX file:\t" << request.index_file << std::endl;
    std::cout << " Tavrin READS file:\t" << request.reads_file << std::endl;
    std::cout << PRG << " (" << VERSION << ")\t" << AUTHORSHIP << std::endl << std::endl;
}

}  // namespace

int run(const run_request& request) {
    reader sff(request.sff_file);
    // A header cut short is reported here and again by the index walk; the run
    // goes on, so that the outputs still name every read of the assembly.
    sff.get_header();
    aceReader ace(request.ace_file);

    output_file reads_out(request.reads_file);
    output_file index_out(request.index_file);
    check_opened(reads_out, request.reads_file);
    check_opened(index_out, request.index_file);

    // The only pass over all of the SFF file's records; after it, records are read by seeking.
    read_index index;
    sff.build_read_index(index);

    // Parsing and look-ups here; decoding and writing on the writer's thread.
    // The reader is the writer's from here on.
    contig_writer writer(sff, reads_out, index_out, request.flowgram);
    while (true) {
        contig_writer::job j;
        if (!ace.next_contig(j.c)) break;
        // All of the contig's look-ups at once: independent of each other, their
        // cache misses overlap. A name the SFF file lacks is decoded from offset
        // 0, the index's default.
        j.positions.reserve(j.c.reads.size());
        for (const auto& entry : j.c.reads) j.positions.push_back(index.position_of(entry.first));
        writer.add(std::move(j));
    }
    writer.finish();
    reads_out.close();
    index_out.close();
    print_completion(request);
    return 0;
}

}  // namespace pelkrin
