#pragma once
// The program's fixed texts, written out by hand for comparison; the version
// comes from the project line of CMakeLists.txt.
#include <string>

namespace pelkrin::test {

inline std::string expected_usage() {
    return "\nUsage: ./Pelkrin [options] aceFile sffFile\n\n" + std::string(26, '.') + "PARAMETERS" +
           std::string(30, '.') + "\n" +
           " aceFile  -- an genome assembly file in ACE format\n"
           " sffFile  -- a binary 454 SFF file\n\n" +
           std::string(28, '.') + "OPTIONS" + std::string(31, '.') + "\n" +
           " -h       -- Print usage information and exit\n"
           " -v       -- Print version information and exit\n"
           " -f       -- Output flowgram indexes and values, default: NO\n" +
           std::string(66, '.') + "\n\n";
}

inline std::string expected_version() {
    return "Pelkrin is an assistant program for Tavrin. It extracts read information \n"
           "        from a SFF file for all reads in the input ACE file. There are two \n"
           "        output files: <PREFIX>.qdx and <PREFIX>.reads, where <PREFIX> is the\n"
           "        basename of the input ACE file. <PREFIX>.reads contains all reads\n"
           "        information, and <PREFIX>.qdx is location index of the <PREFIX>.reads.\n"
           "        Both files are optional input files for Tavrin.\n"
           "\n"
           "Pelkrin (Version " PELKRIN_VERSION ")\tWritten by the Pelkrin developers\n";
}

inline std::string expected_completion(const std::string& index_file, const std::string& reads_file) {
    return "Done! Two output files are:\n\n Tavrin QDX file:\t" + index_file + "\n Tavrin READS file:\t" + reads_file +
           "\nPelkrin (" PELKRIN_VERSION ")\tWritten by the Pelkrin developers\n\n";
}

}  // namespace pelkrin::test
