#include "common/end_process.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

namespace pelkrin {
namespace {

std::vector<flushable*>& registered() {
    static std::vector<flushable*> outputs;
    return outputs;
}

end_process_hook& current_hook() {
    static end_process_hook hook;
    return hook;
}

}  // namespace

void register_flushable(flushable* f) { registered().push_back(f); }

void unregister_flushable(flushable* f) {
    auto& outputs = registered();
    outputs.erase(std::remove(outputs.begin(), outputs.end(), f), outputs.end());
}

void end_process(int status) {
    // Copy first: flushing may unregister. Newest first, as destructors run: a
    // writer registered after its output files finishes its work before they flush.
    const std::vector<flushable*> outputs(registered());
    for (auto f = outputs.rbegin(); f != outputs.rend(); ++f) (*f)->flush_before_exit();
    std::cout.flush();
    std::cerr.flush();
    if (current_hook()) current_hook()(status);
    std::exit(status);
}

end_process_hook set_end_process_hook(end_process_hook hook) {
    return std::exchange(current_hook(), std::move(hook));
}

}  // namespace pelkrin
