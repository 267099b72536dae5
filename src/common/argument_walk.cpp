#include "common/argument_walk.h"

namespace pelkrin {

bool argument_walk::next_option(std::string& option) {
    while (at_ < args_.size()) {
        const std::string& arg = args_[at_++];
        if (options_ended_ || arg.size() < 2 || arg[0] != '-') {
            names_.push_back(arg);
        } else if (arg == "--") {
            options_ended_ = true;
        } else {
            option = arg;
            return true;
        }
    }
    return false;
}

bool argument_walk::next_value(std::string& value) {
    if (at_ >= args_.size()) return false;
    value = args_[at_++];
    return true;
}

}  // namespace pelkrin
