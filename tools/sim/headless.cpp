#include "tools/sim/headless.h"

#include <cmath>

#include "platform/qt/image_surface.h"
#include "platform/qt/picture_set.h"
#include "tools/sim/snapshot.h"

namespace quillop::sim {
namespace {

// Pixels of the drawing image for an inner area that may have a fractional part; a
// playfield too big to hold as an image gets none (and cannot be snapshot).
int imageExtent(double pixels) {
    const double whole = std::ceil(pixels);
    return whole <= 16384 ? static_cast<int>(whole) : 0;
}

}  // namespace

void HeadlessHost::showHighscoreDialog() {
    ++highscoreDialogs;
    if (!dialog) return;
    dialog->Form_Paint();
    // The box shows the previous name; the tool empties it and types its own, then Enter.
    dialog->SaveHighscore(typedName);
}

HeadlessGame::HeadlessGame(const GameSetup& setup, SurfaceKind surface) {
    if (setup.highscoreText) settings_.values["Gorvane/Highscore"] = *setup.highscoreText;
    if (setup.highscorer) settings_.values["Gorvane/Highscorer"] = *setup.highscorer;
    clock_.seed = setup.seed;
    playfieldWindow_.innerWidth = static_cast<float>(setup.width);
    playfieldWindow_.innerHeight = static_cast<float>(setup.height);

    Surface* drawTo = &null_;
    if (surface == SurfaceKind::Image) {
        pictures_ = std::make_unique<PictureSet>();
        image_ = std::make_unique<ImageSurface>(*pictures_, imageExtent(setup.width), imageExtent(setup.height));
        drawTo = image_.get();
    }
    program_ = std::make_unique<Program>(
        ProgramWorld{sound_, host_, settings_, *drawTo, playfieldWindow_, frameWindow_, clock_, pump_});
    host_.dialog = &program_->highscore;

    program_->frame.Form_Load();
    sizeFrameFor(setup.width, setup.height);
    program_->frame.Form_Resize();  // touches the playfield, which loads it
    program_->gorvane().Form_Resize();
}

HeadlessGame::~HeadlessGame() = default;

void HeadlessGame::sizeFrameFor(double width, double height) {
    frameWindow_.widthT = static_cast<float>(width * kTwipsPerPixel + MdiFrame::kFieldMarginWidth);
    frameWindow_.heightT = static_cast<float>(height * kTwipsPerPixel + MdiFrame::kFieldMarginHeight);
}

void HeadlessGame::move(double x, double y) {
    if (blockedByHelp()) return;
    playfield().Form_MouseMove(static_cast<Single>(x), static_cast<Single>(y));
}

void HeadlessGame::press(double x, double y) {
    if (blockedByHelp()) return;
    playfield().Form_MouseDown(static_cast<Single>(x), static_cast<Single>(y));
}

void HeadlessGame::play() {
    if (blockedByHelp() || playfield().cmdPlay.Visible == kFalse) return;
    playfield().cmdPlay_Click();
}

void HeadlessGame::drop() {
    if (blockedByHelp() || playfield().cmdDrop.Visible == kFalse) return;
    playfield().cmdDrop_Click();
}

void HeadlessGame::askNewGame() {
    if (blockedByHelp()) return;
    program_->frame.mnuNewGame_Click();
}

void HeadlessGame::help() {
    if (blockedByHelp()) return;
    helpPlace_ = program_->help().Form_Load();
    helpOpen_ = true;
}

void HeadlessGame::closeHelp() {
    if (!helpOpen_) return;
    program_->help().cmdClose_Click();
    program_->help().SaveHelpSettings(helpPlace_.Top, helpPlace_.Left);
    helpOpen_ = false;
}

void HeadlessGame::minimize() {
    if (blockedByHelp() || frameWindow_.state == kMinimized) return;
    frameWindow_.state = kMinimized;
    program_->frame.Form_Resize();
}

void HeadlessGame::restore() {
    if (blockedByHelp() || frameWindow_.state != kMinimized) return;
    frameWindow_.state = kNormal;
    program_->frame.Form_Resize();
}

void HeadlessGame::resize(double width, double height) {
    if (blockedByHelp()) return;
    playfieldWindow_.innerWidth = static_cast<float>(width);
    playfieldWindow_.innerHeight = static_cast<float>(height);
    if (image_) image_->resize(imageExtent(width), imageExtent(height));
    sizeFrameFor(width, height);
    program_->frame.Form_Resize();
    playfield().Form_Resize();
}

bool HeadlessGame::timerEvent() {
    Gorvane& g = playfield();
    if (g.Timer1.Enabled == kFalse) return false;
    pump_.waits.tickBegins();
    g.Timer1_Timer();
    ++ticks_;
    return true;
}

}  // namespace quillop::sim

namespace quillop::sim {

void HeadlessGame::snapshot(const std::string& file) {
    std::string error;
    if (!image_) throw replay::SnapshotError{0, "cannot write snapshot " + file + ": no picture of the field"};
    if (!writeSnapshot(image_->image(), playfield().shapePuck, file, error))
        throw replay::SnapshotError{0, "cannot write snapshot " + file + ": " + error};
}

}  // namespace quillop::sim
