// frmMDI, the frame: menus, a black client area holding the score panel and the playfield,
// and the placement the frame's rules read and set. Placement is the outer window
// (decorations included) in twips, as the rules store it.
#pragma once

#include <QAction>
#include <QMainWindow>
#include <functional>
#include <optional>

#include "game/frame.h"

namespace quillop {

class FrmMDI : public QMainWindow, public FrameWindow {
public:
    FrmMDI();

    // Wired by the program: the frame's rules and menu commands.
    std::function<void()> onResize;  // MdiFrame::Form_Resize
    std::function<void()> onNewGame;
    std::function<void()> onHelpWindow;
    std::function<void()> onAbout;
    std::function<void()> onClose;   // query-unload of the frame and its children
    std::function<void(float)> onScorePanelWidth;

    QWidget* client() const { return centralWidget(); }
    // From now on the rules see the frame only as they set it: the state and size a
    // recording plays back. The window manager minimises and resizes on its own schedule,
    // which would otherwise reach the rules at other ticks than it did when recorded; the
    // window still shows every change, and nothing the viewer does to it reaches the rules.
    void holdForReplay();
    QAction* mnuNewGame = nullptr;
    QAction* mnuHelpWindow = nullptr;
    QAction* mnuAbout = nullptr;

    // FrameWindow
    float top() override;
    float left() override;
    float height() override;
    float width() override;
    WindowState windowState() override;
    void setTop(float twips) override;
    void setLeft(float twips) override;
    void setHeight(float twips) override;
    void setWidth(float twips) override;
    void setWindowState(WindowState state) override;
    void setScorePanelWidth(float twips) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Remembered {
        float twips = 0;
        int pixels = -1;
    };
    static float remembered(const Remembered& r, int pixels);
    QSize decorations() const;
    void adoptDecorations();

    Remembered top_, left_, width_, height_;
    WindowState lastState_ = kNormal;
    QSize knownDecorations_{-1, -1};  // none seen yet
    QSize wantedOuter_;  // the outer size asked for before the window manager framed us
    std::optional<WindowState> held_;  // the state the rules see while a replay holds the frame
};

}  // namespace quillop
