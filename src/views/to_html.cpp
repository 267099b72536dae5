// The colouring primitive of the base-space HTML renderers.
#include "ace/contig.h"

namespace pelkrin {

void contig::toHTML(std::string& out, const std::vector<char>& chars, const colour_map& colours) {
    std::size_t i = 0;
    while (i < chars.size()) {
        const char x = chars[i];
        const auto colour = colours.find(x);
        if (colour == colours.end()) {
            out.push_back(x);
            ++i;
            continue;
        }
        // One element for the whole run of x.
        out.append("<font color=").append(colour->second).append(">");
        while (i < chars.size() && chars[i] == x) out.push_back(chars[i++]);
        out.append("</font>");
    }
}

}  // namespace pelkrin
