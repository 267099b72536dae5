// The flow consensus without the maps gives what the maps give.
#include <gtest/gtest.h>

#include <sstream>

#include "ace/ace_reader.h"
#include "files.h"
#include "views/flow_space.h"

namespace pelkrin::test {
namespace {

void expect_same_as_the_maps(contig c) {
    const flow_space fs = build_flow_space(c);
    c.create_flow_concensus();
    EXPECT_EQ(fs.flows, c.flow_consensus) << c.name;
    if (c.reads.empty()) {
        EXPECT_TRUE(fs.first_flow.empty());
        return;
    }
    ASSERT_EQ(fs.first_flow.size(), c.consensus.size());
    for (std::size_t i = 0; i < c.consensus.size(); ++i) {
        EXPECT_EQ(fs.first_flow[i], c.getFlowIdx_start(static_cast<int32_t>(i))) << c.name << " at " << i;
        EXPECT_EQ(fs.last_flow[i], c.getFlowIdx_end(static_cast<int32_t>(i))) << c.name << " at " << i;
    }
}

TEST(FlowSpace, MatchesTheFlowConsensusOfEveryContigOfTheFiles) {
    for (const std::filesystem::path& ace :
         {source_file("example/example.ace"), data_file("contig1.ace"), data_file("consed_sample.ace")}) {
        std::ostringstream out, err;
        aceReader reader(ace.string(), console{out, err});
        for (;;) {
            contig c;
            if (!reader.next_contig(c)) break;
            expect_same_as_the_maps(c);
        }
    }
}

TEST(FlowSpace, ANoReadContigHasNoFlows) {
    contig c;
    c.consensus = {'A', 'C'};
    expect_same_as_the_maps(c);
}

}  // namespace
}  // namespace pelkrin::test
