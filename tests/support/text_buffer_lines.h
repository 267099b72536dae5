#pragma once
// Text buffers for tests: one that keeps every hand-off, and lines of many
// sizes written to any buffer.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/text_buffer.h"

namespace pelkrin::test {

// Keeps every hand-off.
class recording_buffer : public text_buffer {
public:
    std::vector<std::string> handed;
    void close() { flush(); }

protected:
    void hand_on(std::vector<char>& bytes, std::size_t used) override { handed.emplace_back(bytes.data(), used); }
};

// Writes lines until more than `bytes` are written: a name, a number, and a
// piece written in place that asks for room for up to 17,501 bytes (the most
// a line of 700 numbers takes) and uses a part of it, as a line of values does.
template <typename Buffer>
void write_lines(Buffer& out, std::size_t bytes) {
    constexpr std::size_t most = 700 * (max_number_chars + 1) + 1;
    for (std::size_t line = 0; out.written() < static_cast<std::int64_t>(bytes); ++line) {
        out.write("name");
        out.put('\t');
        out.number(line);
        char* at = out.room(most);
        const std::size_t used = 1 + (line * 37) % 4000;
        for (std::size_t i = 0; i + 1 < used; ++i) at[i] = static_cast<char>('a' + (line + i) % 26);
        at[used - 1] = '\n';
        out.wrote_up_to(at + used);
    }
}

}  // namespace pelkrin::test
