// The playfield's sprite pictures, by the name of the hidden image control that holds each,
// with the natural size the rules read from that control.
#pragma once

#include <cstdint>

namespace quillop {

enum class Pic : std::uint8_t {
    None,
    Club, Arsemask,                 // the Arse (icon) and its eraser
    Diamond, Knight, Mask24x22,     // 24 x 22 bitmaps and their all-black eraser
    Queen, Queenmask,
    Seeker, Seekermask,
    Mine0, Mine1, Mine2, Mine3, Mine4, Mine5, Minemask,
    Energypod0, Energypod1, Energypod2, Energypod3,
    Energypodmask0, Energypodmask1, Energypodmask2, Energypodmask3,
    Pointspod, Mask40x40,
    Sidestopper, Mask10x75,
    Catfish, Mask75x75,
    Explosion0, Explosion1, Explosion2, Explosion3, Explosion4, Explosion5,
    Explosionmask0, Explosionmask1, Explosionmask2, Explosionmask3, Explosionmask4, Explosionmask5,
    Paddle0, Paddle1, Paddlemask0, Paddlemask1,
    Count
};

constexpr int kPictureCount = static_cast<int>(Pic::Count);

inline Pic picAt(Pic first, int offset) {
    return static_cast<Pic>(static_cast<int>(first) + offset);
}

struct PictureSize {
    int width;
    int height;
};

// Natural pixel size of each picture (icons are 32 x 32 or 48 x 48 whatever their figure).
PictureSize pictureSize(Pic picture);

// Whether the picture is an icon (transparent outside its figure) rather than a bitmap.
bool isIcon(Pic picture);

// Resource base name, e.g. "imgClub" or "imgMine_3".
const char* pictureName(Pic picture);

// The eraser the game paints over the picture to remove it; None for an eraser itself.
Pic eraserOf(Pic picture);

}  // namespace quillop
