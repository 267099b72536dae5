#include "prep/ace_rewrite.h"

#include <algorithm>

#include "common/text_buffer.h"
#include "lenient/ace_lines.h"
#include "common/progress.h"

namespace pelkrin::prep {

void write_ace(std::span<const std::uint8_t> bytes, const std::vector<ace_edit>& edits, text_buffer& out,
               progress* shown) {
    ace_lines lines(bytes);
    std::size_t e = 0;
    std::uint64_t dropped_to = 0;  // the last line of the drops met so far
    ace_line l;
    while (lines.next(l)) {
        bool keep = l.number > dropped_to;
        for (; e < edits.size() && edits[e].line == l.number; ++e) {
            const ace_edit& ed = edits[e];
            if (ed.what == ace_edit::drop_rest) {
                if (shown != nullptr) shown->finish();
                return;
            }
            if (ed.what == ace_edit::drop) {
                dropped_to = std::max(dropped_to, l.number + ed.lines - 1);
            } else {
                out.write(ed.text);
            }
            if (ed.what != ace_edit::insert_before) keep = false;
        }
        if (keep) {
            out.write(l.text);
            out.put('\n');
        }
        if (shown != nullptr && (l.number & 4095) == 0) shown->at(lines.offset());
    }
    // Lines added after the last one.
    for (; e < edits.size(); ++e) {
        if (edits[e].what == ace_edit::insert_before) out.write(edits[e].text);
    }
    if (shown != nullptr) shown->finish();
}

}  // namespace pelkrin::prep
