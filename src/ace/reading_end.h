#pragma once
// How the reading of an ACE file ended, in the words of Pelkrin's messages.
#include <string>

#include "ace_reader.h"

namespace pelkrin {

// After next_contig returned false: why the contigs read are not all that
// the file holds, a line each, each beginning "Error: the ACE file NAME";
// empty when the file was read whole. A file whose AS line announces no
// contig (or cannot be read) while it holds CO lines, then a file that ends
// inside a contig. Reads the rest of the file for the first (see
// aceReader::holds_unannounced_contigs).
std::string incomplete_reading(aceReader& ace);

}  // namespace pelkrin
