#include "game/program.h"

namespace quillop {

Program::Program(const ProgramWorld& world)
    : mod(world.sound, world.host),
      frame(world.frameWindow, world.settings, mod, [this]() -> Gorvane& { return gorvane(); }),
      highscore(mod, world.settings),
      world_(world) {}

Gorvane& Program::gorvane() {
    if (!gorvane_) {
        gorvane_ = std::make_unique<Gorvane>(GorvaneWorld{mod, world_.playfieldWindow, world_.surface,
                                                          world_.settings, rnd, world_.clock,
                                                          world_.pump});
        gorvane_->Form_Load();
    }
    return *gorvane_;
}

HelpRules& Program::help() {
    if (!help_) help_ = std::make_unique<HelpRules>(mod, world_.settings, gorvane());
    return *help_;
}

}  // namespace quillop
