// Where the program's pictures and sounds live among its embedded resources.
#pragma once

#include <QString>

namespace quillop::assets {

inline constexpr char kQueenDrawing[] = ":/queen.svg";
inline constexpr char kAboutPicture[] = ":/about.xpm";
// The help window shows its paddle as a plain 32 x 4 bitmap, not the playfield's icon.
inline constexpr char kHelpPaddle[] = ":/sprites/help_imgPaddle.xpm";
// What plays when an event names a sound that is not there.
inline constexpr char kDefaultSound[] = ":/sounds/default.wav";

// ":/sprites/<name>.xpm" for a picture name such as "imgClub".
QString spritePath(const char* pictureName);
// ":/sounds/<file>" for a bare sound file name such as "begin.wav".
QString soundPath(const QString& fileName);

}  // namespace quillop::assets
