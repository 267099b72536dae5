#include "driver/run.h"

#include <iostream>
#include <vector>

#include "ace/ace_reader.h"
#include "common/end_process.h"
#include "driver/output_file.h"
#include "driver/reads_writer.h"
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

    const std::int32_t linesPerRead = request.flowgram ? 3 : 1;
    seqRead decoded;
    std::vector<std::int64_t> positions;
    while (true) {
        contig c;
        if (!ace.next_contig(c)) break;
        write_contig_header(reads_out, index_out, c, linesPerRead);
        // All of the contig's look-ups first: independent of each other, their
        // cache misses overlap. A name the SFF file lacks is decoded from offset
        // 0, the index's default.
        positions.clear();
        for (const auto& entry : c.reads) positions.push_back(index.position_of(entry.first));
        auto position = positions.begin();
        for (const auto& entry : c.reads) {
            // Emptied, not rebuilt: its storage is reused from read to read.
            decoded.name.clear();
            decoded.bases.clear();
            decoded.quals.clear();
            decoded.flowIdx.clear();
            sff.get_read(*position++, decoded);
            write_read_entry(reads_out, entry.first, decoded, sff.cur_read, request.flowgram);
        }
    }
    reads_out.close();
    index_out.close();
    print_completion(request);
    return 0;
}

}  // namespace pelkrin
