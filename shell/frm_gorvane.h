// frmGorvane, the playfield window: shows the game's drawing surface and the puck, carries
// the Play, Drop and "Insert Coin" controls the game's models describe, and hands mouse
// input, clicks and resizes to the game.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "game/program.h"
#include "platform/qt/image_surface.h"

namespace quillop {

class PlayfieldCanvas;

class FrmGorvane : public QWidget, public PlayfieldWindow {
public:
    static constexpr int kBorder = 3;  // fixed dialog border

    FrmGorvane(QWidget* parent, ImageSurface& surface);
    // The program whose playfield this shows, and what to run after each event that may
    // have changed the game (repaint, timer re-read).
    void bind(Program& program, std::function<void()> afterEvent);
    // Told every input the game took, as a scenario line ("move 10 20", "play"), so the
    // game can be recorded.
    std::function<void(const std::string&)> onCommand;
    // A replay steers the game itself: the player's pointer and clicks are not taken.
    void takePlayerInput(bool take);

    // Shows what the game changed since the last call: the surface's dirty areas, the
    // puck, and the controls' visibility, captions and places.
    void refresh();
    // What a pointer move painted is shown by the next tick's refresh, or after one tick's
    // time if no tick comes first: a move then costs no repaint of its own while the game
    // runs, and the paddle is on screen no later than a tick after the pointer moved.
    void showSoon();
    static constexpr int kShowSoonMs = 15;  // within one tick of 1/64 s

    // PlayfieldWindow
    float scaleWidth() override;
    float scaleHeight() override;
    float top() override;
    float left() override;
    float height() override;
    float width() override;
    WindowState windowState() override { return state_; }
    void setTop(float twips) override;
    void setLeft(float twips) override;
    void setHeight(float twips) override;
    void setWidth(float twips) override;
    void setWindowState(WindowState state) override;
    void setCaption(const std::string&) override {}  // the playfield shows no title

    QWidget* canvas() const;
    QPushButton* cmdPlay = nullptr;
    QPushButton* cmdDrop = nullptr;
    QPushButton* cmdShowVars = nullptr;
    QLabel* Label7 = nullptr;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    friend class PlayfieldCanvas;
    struct Remembered {
        float twips = 0;
        int pixels = -1;
    };
    float remembered(const Remembered& r, int pixels) const;
    void matchSurface();
    void applyGeometry();
    Gorvane* game() const;
    void tell(const char* command, float x, float y);

    ImageSurface& surface_;
    Program* program_ = nullptr;
    std::function<void()> afterEvent_;
    PlayfieldCanvas* canvas_ = nullptr;
    Remembered top_, left_, width_, height_;
    WindowState state_ = kNormal;
    QRect normalGeometry_{0, 0, 1, 1};
    std::optional<QRect> puckDrawn_;
    QTimer showSoon_;
};

}  // namespace quillop
