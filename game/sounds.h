// The game's event sounds: the one list of them, each named by the wave file it plays (a
// file of that name in the current directory, else the built-in one).
#pragma once

#include <cstdint>

namespace quillop {

enum class Sound : std::uint8_t {
    Begin, Drop, SideBounce, BottomBounce, PaddleBounce, Catfish, Energypod, Pointspod,
    Sidestopper, Seeker, Blowup, ArseDeath, GameOver, GoodJob,
};

// By Sound.
inline constexpr const char* kSoundFiles[] = {
    "begin.wav",   "drop.wav",      "sidebounce.wav", "bottombounce.wav", "paddlebounce.wav",
    "catfish.wav", "energypod.wav", "pointspod.wav",  "sidestopper.wav",  "seeker3.wav",
    "blowup.wav",  "arsedeath.wav", "gameover.wav",   "goodjob.wav",
};
static_assert(sizeof kSoundFiles / sizeof *kSoundFiles == static_cast<int>(Sound::GoodJob) + 1);

inline const char* soundFile(Sound sound) { return kSoundFiles[static_cast<int>(sound)]; }

}  // namespace quillop
