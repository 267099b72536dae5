#pragma once
// Whether a read's bases in an assembly (pads removed, either case) occur in
// its SFF record's bases, on either strand: a read that does not is the sign
// of a wrong SFF file.
#include <string>
#include <string_view>

namespace pelkrin::prep {

// `assembly` holds the padded bases of the ACE file; `complemented` says the
// assembly placed the read reversed, so that strand is tried first.
// `scratch` is reused between calls.
bool bases_occur(std::string_view assembly, std::string_view record, bool complemented, std::string& scratch);

}  // namespace pelkrin::prep
