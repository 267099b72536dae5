#include "view_fixture.h"

namespace pelkrin::test {

contig make_contig(std::string_view consensus, const std::vector<read_plan>& reads) {
    contig c;
    c.name = "ctg";
    c.consensus = chars(consensus);
    c.base_num = static_cast<int32_t>(consensus.size());
    c.read_num = static_cast<int32_t>(reads.size());
    for (const read_plan& plan : reads) {
        READ r;
        r.name = plan.name;
        r.pos = plan.pos;
        r.seq = chars(plan.seq);
        r.len = plan.len ? *plan.len : static_cast<int16_t>(plan.seq.size());
        r.uncomplemented = 1;
        r.align_start = 1;
        r.align_end = r.len;
        c.reads[plan.name] = r;
    }
    return c;
}

read_plan plain_read(std::string name, int32_t pos, int16_t len) {
    return read_plan{std::move(name), pos, std::string(static_cast<std::size_t>(len), 'A'), std::nullopt};
}

std::vector<char> chars(std::string_view text) { return std::vector<char>(text.begin(), text.end()); }

std::string text(const std::vector<char>& chars) { return std::string(chars.begin(), chars.end()); }

}  // namespace pelkrin::test
