// Whether SFF files can be merged, settled from their headers alone, and
// the whole plan of a merge.
#include "prep/sff_merge.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/fatal_error.h"
#include "files.h"
#include "lenient/sff_layout.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

sff_fixture two_reads(const char* first, const char* second) {
    sff_fixture f;
    f.flows = 8;
    f.reads.push_back(read_from_flows(first, {0, 2, 4}, {30, 31, 32}, 8));
    f.reads.push_back(read_from_flows(second, {1, 3}, {20, 21}, 8));
    return f;
}

// The files' bytes stay in `kept` for as long as the inputs point into them.
// Two files at most, f1.sff and f2.sff.
std::vector<prep::sff_input> inputs_of(const std::vector<sff_fixture>& files, std::vector<std::string>& kept) {
    std::vector<prep::sff_input> inputs;
    kept.clear();
    for (const sff_fixture& f : files) kept.push_back(build_sff(f).bytes);
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string name = i == 0 ? "f1.sff" : "f2.sff";
        const auto bytes = std::span(reinterpret_cast<const std::uint8_t*>(kept[i].data()), kept[i].size());
        inputs.push_back(prep::sff_input{name, bytes, scan_sff(bytes, name)});
    }
    return inputs;
}

std::string refusal(const std::vector<prep::sff_input>& inputs, bool header_only) {
    try {
        if (header_only) prep::plan_merge_header(inputs);
        else prep::plan_merge(inputs);
    } catch (const fatal_error& e) {
        return e.message();
    }
    return "";
}

TEST(PrepMergeHeader, RefusesWhatTheWholePlanRefuses) {
    sff_fixture other_key = two_reads("c", "d");
    other_key.key = "GACT";
    sff_fixture other_flows = two_reads("c", "d");
    other_flows.flow_chars = "ACGTACGT";
    for (const sff_fixture& second : {other_key, other_flows}) {
        std::vector<std::string> kept;
        const auto inputs = inputs_of({two_reads("a", "b"), second}, kept);
        const std::string whole = refusal(inputs, false);
        EXPECT_NE(whole, "");
        EXPECT_EQ(refusal(inputs, true), whole);
    }
}

// The header plan leaves the records alone: the whole plan finds the name
// the two files share, the header plan does not look.
TEST(PrepMergeHeader, LeavesTheRecordsAlone) {
    std::vector<std::string> kept;
    const auto inputs = inputs_of({two_reads("a", "b"), two_reads("b", "c")}, kept);
    const prep::merge_plan header = prep::plan_merge_header(inputs);
    const prep::merge_plan whole = prep::plan_merge(inputs);
    EXPECT_EQ(header.flows, 8);
    EXPECT_EQ(header.flows, whole.flows);
    EXPECT_EQ(header.flow_chars, whole.flow_chars);
    EXPECT_EQ(header.key, whole.key);
    EXPECT_TRUE(header.kept.empty());
    EXPECT_EQ(header.reads, 0u);
    EXPECT_EQ(whole.duplicates, 1u);
    EXPECT_EQ(whole.reads, 3u);
}

}  // namespace
}  // namespace pelkrin::test
