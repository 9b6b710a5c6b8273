// The clock the game's waits and its generator's seed read.
#pragma once

#include <functional>
#include <optional>

#include "game/world.h"

namespace quillop {

// Seconds since local midnight, stepping 64 times a second like the classic desktop's
// clock: the explosion's short waits last whole steps of it.
class QtClock : public Clock {
public:
    static constexpr int kStepsPerSecond = 64;
    double secondsSinceMidnight() override;
    std::uint32_t randomSeed() override;
    // A replayed game seeds the generator as the recorded one did.
    void setSeed(std::uint32_t seed) { fixedSeed_ = seed; }
    // Told when the playfield's load asks for its seed, its last step.
    std::function<void()> onSeedAsked;

private:
    std::optional<std::uint32_t> fixedSeed_;
};

}  // namespace quillop
