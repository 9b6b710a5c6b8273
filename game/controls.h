// The playfield's controls as the game owns them: plain models that the window binds to
// real widgets and the headless tool reads for its trace. Positions are inner pixels.
#pragma once

#include <cstdint>
#include <string>

#include "game/base/numbers.h"

namespace quillop {

struct ControlModel {
    Single Left = 0, Top = 0, Width = 0, Height = 0;
    Boolean Visible = kFalse;
    std::string Caption;
};

// Shape codes and fill styles of the platform's shape control.
enum ShapeKind : std::int16_t { kShapeSquare = 1, kShapeCircle = 3, kShapeRoundedSquare = 4 };
enum FillStyle : std::int16_t { kFillSolid = 0, kFillDiagonalCross = 7 };

struct ShapeModel {
    Single Left = 0, Top = 0, Width = 0, Height = 0;
    Boolean Visible = kFalse;
    std::int16_t Shape = kShapeCircle;
    std::int16_t FillStyle = kFillSolid;
    std::uint32_t FillColor = 0;  // 0x00BBGGRR
};

struct TimerModel {
    Boolean Enabled = kFalse;
    int Interval = 0;  // milliseconds
};

// Colours as the code writes them, 0x00BBGGRR.
constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kTeal = 0xC0C000;         // red 0, green 192, blue 192
constexpr std::uint32_t kYellowGreen = 0x00C090;  // red 144, green 192, blue 0
constexpr std::uint32_t kExplodedRed = 0x0000C0;  // red 192

}  // namespace quillop
