// The design data of the playfield's hidden image controls.
#include "game/pictures.h"

namespace quillop {
namespace {

struct PictureInfo {
    const char* name;
    PictureSize size;
    bool icon;
    Pic eraser;
};

constexpr PictureSize k32{32, 32};
constexpr PictureSize k48{48, 48};

// Each picture with its natural size, whether it is an icon, and the eraser the game paints
// over it (several pictures share one; an eraser has none).
constexpr PictureInfo kPictures[kPictureCount] = {
    {"", {0, 0}, false, Pic::None},
    {"imgClub", k32, true, Pic::Arsemask}, {"imgArsemask", k32, true, Pic::None},
    {"imgDiamond", {24, 22}, false, Pic::Mask24x22}, {"imgKnight", {24, 22}, false, Pic::Mask24x22},
    {"img24x22mask", {24, 22}, false, Pic::None},
    {"imgQueen", k32, true, Pic::Queenmask}, {"imgQueenmask", k32, true, Pic::None},
    {"imgSeeker", k32, true, Pic::Seekermask}, {"imgSeekermask", k32, true, Pic::None},
    {"imgMine_0", k32, true, Pic::Minemask}, {"imgMine_1", k32, true, Pic::Minemask},
    {"imgMine_2", k32, true, Pic::Minemask}, {"imgMine_3", k32, true, Pic::Minemask},
    {"imgMine_4", k32, true, Pic::Minemask}, {"imgMine_5", k32, true, Pic::Minemask},
    {"imgMinemask", k32, true, Pic::None},
    {"imgEnergypod_0", k48, true, Pic::Energypodmask0}, {"imgEnergypod_1", k48, true, Pic::Energypodmask1},
    {"imgEnergypod_2", k48, true, Pic::Energypodmask2}, {"imgEnergypod_3", k48, true, Pic::Energypodmask3},
    {"imgEnergypodmask_0", k48, true, Pic::None}, {"imgEnergypodmask_1", k48, true, Pic::None},
    {"imgEnergypodmask_2", k48, true, Pic::None}, {"imgEnergypodmask_3", k48, true, Pic::None},
    {"imgPointspod", {40, 40}, false, Pic::Mask40x40}, {"img40x40mask", {40, 40}, false, Pic::None},
    {"imgSidestopper", {10, 75}, false, Pic::Mask10x75}, {"img10x75mask", {10, 75}, false, Pic::None},
    {"imgCatfish", {75, 75}, false, Pic::Mask75x75}, {"img75x75mask", {75, 75}, false, Pic::None},
    {"imgExplosion_0", k32, true, Pic::Explosionmask0}, {"imgExplosion_1", k32, true, Pic::Explosionmask1},
    {"imgExplosion_2", k32, true, Pic::Explosionmask2}, {"imgExplosion_3", k32, true, Pic::Explosionmask3},
    {"imgExplosion_4", k32, true, Pic::Explosionmask4}, {"imgExplosion_5", k32, true, Pic::Explosionmask5},
    {"imgExplosionmask_0", k32, true, Pic::None}, {"imgExplosionmask_1", k32, true, Pic::None},
    {"imgExplosionmask_2", k32, true, Pic::None}, {"imgExplosionmask_3", k32, true, Pic::None},
    {"imgExplosionmask_4", k32, true, Pic::None}, {"imgExplosionmask_5", k32, true, Pic::None},
    {"imgPaddle_0", k32, true, Pic::Paddlemask0}, {"imgPaddle_1", {64, 4}, false, Pic::Paddlemask1},
    {"imgPaddlemask_0", k32, true, Pic::None}, {"imgPaddlemask_1", {64, 4}, false, Pic::None},
};

const PictureInfo& info(Pic p) { return kPictures[static_cast<int>(p)]; }

}  // namespace

PictureSize pictureSize(Pic picture) { return info(picture).size; }
bool isIcon(Pic picture) { return info(picture).icon; }
const char* pictureName(Pic picture) { return info(picture).name; }
Pic eraserOf(Pic picture) { return info(picture).eraser; }

}  // namespace quillop
