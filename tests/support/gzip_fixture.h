#pragma once
// gzip data for tests, made with zlib.
#include <string>

namespace pelkrin::test {

// The text as a gzip file of one member.
std::string gzipped(const std::string& text);

}  // namespace pelkrin::test
