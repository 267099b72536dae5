#pragma once
// A read's place in a flow-space span: its first and last flow as columns.
#include <cstdint>
#include <string>

namespace pelkrin {

struct fRead {
    std::string name;
    int32_t flow_start = 0;
    int32_t flow_end = 0;  // also the key under which the row map stores it

    friend bool operator==(const fRead&, const fRead&) = default;
};

}  // namespace pelkrin
