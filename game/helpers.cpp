// Small motion and geometry procedures shared by the tick, the mouse and the layout.
#include <cmath>

#include "game/gorvane.h"

namespace quillop {

void Gorvane::CalcPuckEdges() {
    PuckTop = shapePuck.Top;
    PuckBottom = static_cast<double>(shapePuck.Top) + shapePuck.Height;
    PuckLeft = shapePuck.Left;
    PuckRight = static_cast<double>(shapePuck.Left) + shapePuck.Width;
}

void Gorvane::MoveShape(const Double& step) {
    shapePuck.Left = static_cast<Single>(shapePuck.Left + XMove * step);
    shapePuck.Top = static_cast<Single>(shapePuck.Top + YMove * step);
    CalcPuckEdges();
}

void Gorvane::Checkdistance1(Double& distance) {
    const double cx = 0.5 * shapePuck.Width + shapePuck.Left;
    const double cy = 0.5 * shapePuck.Height + shapePuck.Top;
    PodCenterX = 0.5 * EnergypodSprite.Width + EnergypodSprite.Left;
    PodCenterY = 0.5 * EnergypodSprite.Height + EnergypodSprite.Top;
    distance = std::pow(std::pow(cy - PodCenterY, 2) + std::pow(cx - PodCenterX, 2), 0.5);
}

void Gorvane::DrawPaddle() {
    PaddleEdgeX1 = static_cast<Single>(MouseX - 0.5 * PaddleWidth);
    PaddleEdgeY1 = MouseY - 2;
    PaddleEdgeX2 = static_cast<Single>(0.5 * PaddleWidth + MouseX);
    PaddleEdgeY2 = MouseY - 2;
    paint(PaddleMasks[PaddleImageDrawn], PaddleX, PaddleY);
    PaddleImageDrawn = PaddleImage;
    PaddleX = static_cast<Single>(MouseX - 0.5 * PaddleWidth);
    PaddleY = MouseY - 2;
    paint(PaddleImages[PaddleImage], PaddleX, PaddleY);
}

void Gorvane::CenterControl(ControlModel& c) {
    const float width = W() - L();
    const float height = H() - T();
    c.Left = static_cast<Single>((static_cast<double>(width) - c.Width) / 2);
    c.Top = static_cast<Single>((static_cast<double>(height) - c.Height) / 2);
}

void Gorvane::CenterSprite(SpriteRecord& r) {
    r.Left = static_cast<Single>((static_cast<double>(W() - L()) - r.Width) / 2);
    r.Top = static_cast<Single>((static_cast<double>(H() - T()) - r.Height) / 2);
}

void Gorvane::MoveMine(SpriteRecord& m) {
    if (m.Active != kTrue) return;
    paint(m.Mask, m.Left, m.Top);
    m.Top = m.Top + 4;
    const double r1 = rnd_.next();
    const double r2 = rnd_.next();
    m.Left = static_cast<Single>(m.Left + r1 * 8 - r2 * 10);
    paint(m.Picture, m.Left, m.Top);
    if (rounded(static_cast<double>(T()) - m.Height) > m.Top) m.Top = H() - T();
    if (rounded(static_cast<double>(H()) - T()) < m.Top) {
        m.Active = kFalse;  // fallen out of the bottom: painted once, then erased
        paint(m.Mask, m.Left, m.Top);
    }
    // A sideways wrap is not repainted until the mine's next fall.
    if (m.Left > W()) m.Left = L() - m.Width;
    if (rounded(static_cast<double>(L()) - m.Width) > m.Left) m.Left = W();
}

}  // namespace quillop
