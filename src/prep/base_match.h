#pragma once
// Whether a read's bases in an assembly (pads removed, either case) occur in
// its SFF record's bases, on either strand: a read that does not is the sign
// of a wrong SFF file.
#include <string>
#include <string_view>

namespace pelkrin::prep {

// Room reused from one call to the next: with a wrong SFF file every read
// takes the slow way, and would otherwise take three strings from the heap.
struct match_scratch {
    std::string wanted;    // the assembly's bases as sought
    std::string forward;   // the record's bases, upper case
    std::string reversed;  // their reverse complement
};

// `assembly` holds the padded bases of the ACE file; `complemented` says the
// assembly placed the read reversed, so that strand is tried first.
bool bases_occur(std::string_view assembly, std::string_view record, bool complemented, match_scratch& scratch);

}  // namespace pelkrin::prep
