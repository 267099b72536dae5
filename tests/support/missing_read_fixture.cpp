#include "missing_read_fixture.h"

namespace pelkrin::test {

std::string assembly_with_a_missing_read() {
    return "AS 2 4\n\nCO Contig1 8 2 1 U\nTCTTCCCT\n\nBQ\n30 30 30 30 30 30 30 30\n\n"
           "AF readA U 1\nAF readB C 6\nBS 1 8 readA\n\n"
           "RD readA 6 0 0\nTC*TTC\n\nQA 1 6 1 6\nDS x\n\n"
           "RD readB 3 0 0\nCCT\n\nQA 1 3 1 3\nDS x\n\n"
           "CO Contig2 4 2 1 U\nTCAG\n\nBQ\n30 30 30 30\n\nAF readC U 2\nAF zabsent U 1\nBS 1 4 zabsent\n\n"
           "RD readC 2 0 0\nca\n\nQA 1 2 1 2\nDS x\n\n"
           "RD zabsent 4 0 0\nTCAG\n\nQA 1 4 1 4\nDS x\n\n";
}

}  // namespace pelkrin::test
