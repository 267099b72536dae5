#pragma once
// The consensus in flow space as create_flow_concensus builds it, without the
// per-position maps: for a caller that needs only the flows and, for every
// consensus index, the first and last flow that getFlowIdx_start and
// getFlowIdx_end give there. It leaves the contig as it is, and costs a
// fraction of the maps on a deep contig.
#include <cstdint>
#include <vector>

#include "../ace/contig.h"

namespace pelkrin {

struct flow_space {
    std::vector<char> flows;           // as contig::flow_consensus
    std::vector<int32_t> first_flow;   // getFlowIdx_start(i), for every consensus index i
    std::vector<int32_t> last_flow;    // getFlowIdx_end(i)
};

// Empty when the contig has no reads, as create_flow_concensus leaves it.
flow_space build_flow_space(const contig& c);

}  // namespace pelkrin
