// The design data of the playfield's hidden image controls.
#include "game/pictures.h"

namespace quillop {
namespace {

struct PictureInfo {
    const char* name;
    PictureSize size;
    bool icon;
};

constexpr PictureSize k32{32, 32};
constexpr PictureSize k48{48, 48};

constexpr PictureInfo kPictures[kPictureCount] = {
    {"", {0, 0}, false},
    {"imgClub", k32, true}, {"imgArsemask", k32, true},
    {"imgDiamond", {24, 22}, false}, {"imgKnight", {24, 22}, false}, {"img24x22mask", {24, 22}, false},
    {"imgQueen", k32, true}, {"imgQueenmask", k32, true},
    {"imgSeeker", k32, true}, {"imgSeekermask", k32, true},
    {"imgMine_0", k32, true}, {"imgMine_1", k32, true}, {"imgMine_2", k32, true},
    {"imgMine_3", k32, true}, {"imgMine_4", k32, true}, {"imgMine_5", k32, true},
    {"imgMinemask", k32, true},
    {"imgEnergypod_0", k48, true}, {"imgEnergypod_1", k48, true},
    {"imgEnergypod_2", k48, true}, {"imgEnergypod_3", k48, true},
    {"imgEnergypodmask_0", k48, true}, {"imgEnergypodmask_1", k48, true},
    {"imgEnergypodmask_2", k48, true}, {"imgEnergypodmask_3", k48, true},
    {"imgPointspod", {40, 40}, false}, {"img40x40mask", {40, 40}, false},
    {"imgSidestopper", {10, 75}, false}, {"img10x75mask", {10, 75}, false},
    {"imgCatfish", {75, 75}, false}, {"img75x75mask", {75, 75}, false},
    {"imgExplosion_0", k32, true}, {"imgExplosion_1", k32, true}, {"imgExplosion_2", k32, true},
    {"imgExplosion_3", k32, true}, {"imgExplosion_4", k32, true}, {"imgExplosion_5", k32, true},
    {"imgExplosionmask_0", k32, true}, {"imgExplosionmask_1", k32, true},
    {"imgExplosionmask_2", k32, true}, {"imgExplosionmask_3", k32, true},
    {"imgExplosionmask_4", k32, true}, {"imgExplosionmask_5", k32, true},
    {"imgPaddle_0", k32, true}, {"imgPaddle_1", {64, 4}, false},
    {"imgPaddlemask_0", k32, true}, {"imgPaddlemask_1", {64, 4}, false},
};

const PictureInfo& info(Pic p) { return kPictures[static_cast<int>(p)]; }

}  // namespace

PictureSize pictureSize(Pic picture) { return info(picture).size; }
bool isIcon(Pic picture) { return info(picture).icon; }
const char* pictureName(Pic picture) { return info(picture).name; }

}  // namespace quillop
