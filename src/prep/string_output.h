#pragma once
// What the writers write, gathered in a string: for tests and fuzzing.
#include <string>
#include <vector>

#include "common/text_buffer.h"

namespace pelkrin::prep {

class string_output : public text_buffer {
public:
    // Everything written so far.
    const std::string& text() {
        flush();
        return text_;
    }

protected:
    void hand_on(std::vector<char>& bytes, std::size_t used) override { text_.append(bytes.data(), used); }

private:
    std::string text_;
};

}  // namespace pelkrin::prep
