// The game's one random generator: a 24-bit linear congruential state, so that a seed and
// the order of draws replay a game exactly.
#pragma once

#include <cstdint>

namespace quillop {

class Generator {
public:
    static constexpr std::uint32_t kStartState = 327680;

    // Uniform in [0, 1). Every draw counts, seeded or not.
    double next() {
        state_ = static_cast<std::uint32_t>((std::uint64_t{state_} * 1140671485u + 12820163u) % 16777216u);
        ++draws_;
        return state_ / 16777216.0;
    }
    void seed(std::uint32_t s) { state_ = s % 16777216u; }
    std::uint32_t state() const { return state_; }
    std::uint64_t draws() const { return draws_; }

private:
    std::uint32_t state_ = kStartState;
    std::uint64_t draws_ = 0;
};

}  // namespace quillop
