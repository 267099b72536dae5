#pragma once
// Contigs built in memory for the view tests.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ace/contig.h"

namespace pelkrin::test {

struct read_plan {
    std::string name;
    int32_t pos = 1;
    std::string seq;
    std::optional<int16_t> len;  // none: the number of characters of seq

    read_plan(std::string n, int32_t p, std::string s, std::optional<int16_t> l = std::nullopt)
        : name(std::move(n)), pos(p), seq(std::move(s)), len(l) {}
};

// A contig whose base_num is the length of `consensus`, holding `reads`.
contig make_contig(std::string_view consensus, const std::vector<read_plan>& reads);

// A read of `len` characters whose bases do not matter to the test.
read_plan plain_read(std::string name, int32_t pos, int16_t len);

std::vector<char> chars(std::string_view text);
std::string text(const std::vector<char>& chars);

using names = std::vector<std::string>;

// What a span renderer wrote, and the read names it listed.
struct drawn {
    std::string out;
    names reads;
};

}  // namespace pelkrin::test
