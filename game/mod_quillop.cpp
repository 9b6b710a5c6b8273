#include "game/mod_quillop.h"

#include "game/base/number_text.h"

namespace quillop {

void ModQuillop::ShowHighscoreCaption() {
    host_.setFrameCaption("Quillop High Score by " + Highscorer + " - " + numberText(Highscore));
}

}  // namespace quillop
