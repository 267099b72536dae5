#pragma once
// Writing an ACE file in the layout Pelkrin reads: the file's lines as the
// lenient reading takes them (line feeds only, lines of white space only
// emptied), with the edits of read_ace applied.
#include <cstdint>
#include <span>
#include <vector>

#include "lenient/ace_layout.h"

namespace pelkrin {
class text_buffer;
}

namespace pelkrin::prep {

void write_ace(std::span<const std::uint8_t> bytes, const std::vector<ace_edit>& edits, text_buffer& out,
               progress* shown = nullptr);

}  // namespace pelkrin::prep
