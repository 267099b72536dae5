// A program outside the project that builds on the installed library: for
// every contig of an ACE file, its name, reads, padded length, flows of its
// consensus in flow space and the first display row's reads.
#include <iostream>
#include <string>

#include <pelkrin/ace/ace_reader.h>
#include <pelkrin/ace/contig.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: consumer aceFile\n";
        return 2;
    }
    // Its reports that do not end the reading go to the standard streams.
    pelkrin::aceReader reader(argv[1]);
    for (;;) {
        pelkrin::contig c;
        if (!reader.next_contig(c)) break;
        c.create_flow_concensus();
        std::string plain;
        std::vector<std::string> drawn;
        c.print_align_map_plain(plain, drawn, 101, 20);
        std::cout << c.name << '\t' << c.reads.size() << '\t' << c.consensus.size() << '\t'
                  << c.flow_consensus.size() << '\t' << drawn.size() << '\n';
    }
    return 0;
}
