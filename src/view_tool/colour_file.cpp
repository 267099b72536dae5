#include "view_tool/colour_file.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include "common/input_file.h"

namespace pelkrin {

colour_map default_colours() {
    return {{'A', "green"}, {'C', "blue"}, {'G', "orange"}, {'T', "red"}, {'N', "gray"}, {'*', "gray"}};
}

colour_file_result read_colour_file(const std::string& path) {
    colour_file_result result;
    input_file in;
    std::vector<std::uint8_t> bytes;
    if (!in.open(path, input_reading::front_to_back) || !in.read_to_end(bytes)) {
        result.error = "can not read colour file " + path;
        return result;
    }
    const std::string text(bytes.begin(), bytes.end());

    colour_map colours;
    std::size_t line_number = 0;
    std::size_t from = 0;
    while (from < text.size()) {
        std::size_t to = text.find('\n', from);
        if (to == std::string::npos) to = text.size();
        std::string_view line(text.data() + from, to - from);
        from = to + 1;
        ++line_number;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty()) continue;
        if (line.size() < 2 || line[1] != '\t') {
            result.error = "colour file " + path + " line " + std::to_string(line_number) +
                           ": not a character, a tab and a colour";
            return result;
        }
        colours[line[0]] = std::string(line.substr(2));
    }
    result.colours = std::move(colours);
    return result;
}

}  // namespace pelkrin
