// Pelkrin-bam: an ACE assembly with its reads' qualities and flow signals
// from the SFF files, as an indexed BAM file and its reference.
#include <iostream>

int main() {
    std::cerr << "Pelkrin-bam: not yet\n";
    return 1;
}
