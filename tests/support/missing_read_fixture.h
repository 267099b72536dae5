#pragma once
// An assembly whose reads carry their own bases, with one read that its SFF
// file lacks, for the report's tests.
#include <string>

namespace pelkrin::test {

// The worked example's reads (run_fixture.h) in two contigs of their own
// bases: Contig1 holds readA (T C T T C) and readB (A G G, on the other
// strand), Contig2 readC (C A) and zabsent, which the worked example's SFF
// file does not hold. Pelkrin -f writes an entry for zabsent from the start of
// that small file: one base, at flow -1. zabsent comes last in the file, as
// Pelkrin decodes the reads after such an entry from a file this small wrongly.
std::string assembly_with_a_missing_read();

}  // namespace pelkrin::test
