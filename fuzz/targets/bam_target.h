#pragma once
// Pelkrin-bam's records as a fuzz target, apart from the others: it links
// htslib, which only Pelkrin-bam does.
#include <cstddef>
#include <cstdint>

namespace pelkrin::fuzz {

// An ACE file and an SFF file cut from one input (its first four bytes,
// little-endian, give the ACE file's length): every read of every contig
// the lenient reading reads is made into its BAM record, which must be valid
// (its CIGAR spanning SEQ, on its reference, one quality a base, NM and MD
// as calmd makes them), or the input ends in a clean error.
void bam_records(const std::uint8_t* data, std::size_t size);

}  // namespace pelkrin::fuzz
