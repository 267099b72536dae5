#include "driver/texts.h"

#include <string>

namespace pelkrin {

void print_usage(std::ostream& out) {
    // Some rows carry a "\n" of their own, so the text has empty lines after the
    // usage line and after the parameter block.
    out << "\nUsage: ./" << PRG << " [options] aceFile sffFile\n" << std::endl;
    out << "..........................PARAMETERS.............................." << std::endl;
    out << " aceFile  -- an genome assembly file in ACE format" << std::endl;
    out << " sffFile  -- a binary 454 SFF file\n" << std::endl;
    out << "............................OPTIONS..............................." << std::endl;
    out << " -h       -- Print usage information and exit" << std::endl;
    out << " -v       -- Print version information and exit" << std::endl;
    out << " -f       -- Output flowgram indexes and values, default: NO" << std::endl;
    out << std::string(66, '.') << std::endl;
    out << std::endl;
}

void print_version(std::ostream& out) {
    out << PRG << " is an assistant program for Tavrin. It extracts read information " << std::endl;
    out << "        from a SFF file for all reads in the input ACE file. There are two " << std::endl;
    out << "        output files: <PREFIX>.qdx and <PREFIX>.reads, where <PREFIX> is the" << std::endl;
    out << "        basename of the input ACE file. <PREFIX>.reads contains all reads" << std::endl;
    out << "        information, and <PREFIX>.qdx is location index of the <PREFIX>.reads." << std::endl;
    out << "        Both files are optional input files for Tavrin." << std::endl;
    out << std::endl;
    out << PRG << " (Version " << VERSION << ")\t" << AUTHORSHIP << std::endl;
}

}  // namespace pelkrin
