// Reading the settings store's text into the program's values. The store is a text file a
// user can edit by hand, so every read falls back to its default when the text is not a
// number, is not finite, or is absurd for its use; the other entries are unaffected.
#pragma once

#include <string>

#include "game/world.h"

namespace quillop {

enum class TwipsUse {
    Position,  // a Top or Left: must lie within reach of some screen
    Size,      // a Height or Width: from 2 pixels (30 twips) to 100,000 twips
};

// A single-precision placement value in twips.
float readTwips(SettingsStore& store, const std::string& section, const std::string& key,
                float fallback, TwipsUse use);

// A stored window state; a number that is none gives the fallback.
WindowState readWindowState(SettingsStore& store, const std::string& section, WindowState fallback);

// The best score (a Double) and its holder (any text, kept verbatim).
double readHighscore(SettingsStore& store);
std::string readHighscorer(SettingsStore& store);

// Writing: placements as Single text, whole numbers without a decimal part.
void writeTwips(SettingsStore& store, const std::string& section, const std::string& key, float twips);
// "Top", "Left", "Height", "Width", in that order.
void writePlacement(SettingsStore& store, const std::string& section, const Placement& placement);
void writeNumber(SettingsStore& store, const std::string& section, const std::string& key, double value);

}  // namespace quillop
