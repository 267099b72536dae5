#pragma once
// The fuzz targets as plain functions, so that the fuzzers and the regression
// tests call the same code. Each takes arbitrary bytes, must neither crash nor
// hang, and turns the program's fatal exits into an ordinary return.
#include <cstddef>
#include <cstdint>

namespace pelkrin::fuzz {

// The ACE reader: next_contig until it returns false.
void ace_reader(const std::uint8_t* data, std::size_t size);
// The SFF reader: the header, the index walk, then every indexed read by position.
void sff_reader(const std::uint8_t* data, std::size_t size);
// The whole run, on an ACE file and an SFF file cut from one input: its first
// four bytes (little-endian) give the ACE file's length.
void whole_run(const std::uint8_t* data, std::size_t size);
// The contig views: every contig of arbitrary ACE bytes, then every operation
// and renderer over several spans.
void contig_views(const std::uint8_t* data, std::size_t size);
// The location index and the reads file that Pelkrin writes, read back as the
// report reads them: the first four bytes (little-endian) give the index's
// length, the reads file follows it.
void reads_file(const std::uint8_t* data, std::size_t size);
// Pelkrin-prep's lenient ACE reading and repair (gzip input included): a file
// it repairs must read in Pelkrin's reader exactly as the lenient reading read it.
void prep_ace(const std::uint8_t* data, std::size_t size);
// Pelkrin-prep's SFF walk and merge of one file: the merged file holds every
// read the plan counts, whole, for Pelkrin's reader.
void prep_sff(const std::uint8_t* data, std::size_t size);

}  // namespace pelkrin::fuzz
