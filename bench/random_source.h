#pragma once
// A small fixed generator (xorshift), so that a seed gives the same data on
// every platform, which the standard distributions do not promise.
#include <cstdint>

class random_source {
public:
    explicit random_source(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15ull + 1) {}
    std::uint64_t next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return state_;
    }
    int below(int n) { return static_cast<int>(next() % static_cast<std::uint64_t>(n)); }
    int between(int lo, int hi) { return lo + below(hi - lo + 1); }

private:
    std::uint64_t state_;
};
