#include "ace/reading_end.h"

namespace pelkrin {

std::string incomplete_reading(aceReader& ace) {
    std::string problems;
    if (ace.holds_unannounced_contigs()) {
        problems += "Error: the ACE file " + ace.file_name + " holds contigs that its AS line does not announce\n";
    }
    if (ace.ended_inside_contig()) {
        problems += "Error: the ACE file " + ace.file_name + " ends inside contig " + ace.unfinished_contig();
        if (ace.unfinished_contig_had_cr()) problems += " (its lines end with CR LF)";
        problems += "\n";
    }
    return problems;
}

}  // namespace pelkrin
