#pragma once
// A deep contig for the report's tests, with Pelkrin -f output made up for it.
#include <filesystem>

namespace pelkrin::test {

// One contig, BigContig, of `reads` reads (big0, big1, ...) of 300 to 500
// bases over `length` positions, the reads copied from the consensus, all
// aligned whole; deterministic. Beside it, PREFIX.reads and PREFIX.qdx as
// Pelkrin -f would write them, made up: ten bases and 100 flows a read.
void write_big_contig(const std::filesystem::path& path, int reads, int length);

}  // namespace pelkrin::test
