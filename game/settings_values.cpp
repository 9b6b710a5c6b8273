// Where a stored value is unusable we fall back to the default and leave the other
// entries alone, so a hand-edited or damaged store can never stop the program starting.
#include "game/settings_values.h"

#include <cmath>

#include "game/base/number_text.h"
#include "game/base/numbers.h"

namespace quillop {

namespace {

// Twice the widest desktop we expect, either side of the origin: a window placed further
// out than this could never be dragged back by its owner.
constexpr double kFarestPosition = 100000.0;
constexpr double kSmallestSize = 30.0;  // two pixels
constexpr double kLargestSize = 100000.0;

bool readNumber(SettingsStore& store, const std::string& section, const std::string& key,
                double fallback, double& out) {
    const std::string text = store.read(section, key, numberText(fallback));
    return parseNumber(text, out) && std::isfinite(out);
}

bool usableTwips(double value, TwipsUse use) {
    // The check is made on the Single the window will receive, not on the text.
    const double single = static_cast<float>(value);
    if (!std::isfinite(single)) return false;
    if (use == TwipsUse::Position) return std::fabs(single) <= kFarestPosition;
    return single >= kSmallestSize && single <= kLargestSize;
}

}  // namespace

float readTwips(SettingsStore& store, const std::string& section, const std::string& key,
                float fallback, TwipsUse use) {
    double value = 0;
    if (!readNumber(store, section, key, fallback, value) || !usableTwips(value, use))
        return fallback;
    return static_cast<float>(value);
}

WindowState readWindowState(SettingsStore& store, const std::string& section, WindowState fallback) {
    double value = 0;
    if (!readNumber(store, section, "Windowstate", fallback, value)) return fallback;
    if (std::fabs(value) > 32767.0) return fallback;
    const int state = static_cast<int>(std::nearbyint(value));  // CInt: half to even
    return state >= kNormal && state <= kMaximized ? static_cast<WindowState>(state) : fallback;
}

double readHighscore(SettingsStore& store) {
    double value = 0;
    if (!readNumber(store, "Gorvane", "Highscore", 0, value)) return 0;
    return value;
}

std::string readHighscorer(SettingsStore& store) {
    return store.read("Gorvane", "Highscorer", "Ormswell");
}

void writeTwips(SettingsStore& store, const std::string& section, const std::string& key,
                float twips) {
    store.write(section, key, singleText(twips));
}

void writePlacement(SettingsStore& store, const std::string& section, const Placement& placement) {
    writeTwips(store, section, "Top", placement.Top);
    writeTwips(store, section, "Left", placement.Left);
    writeTwips(store, section, "Height", placement.Height);
    writeTwips(store, section, "Width", placement.Width);
}

void writeNumber(SettingsStore& store, const std::string& section, const std::string& key,
                 double value) {
    store.write(section, key, numberText(value));
}

}  // namespace quillop
