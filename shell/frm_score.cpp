#include "shell/frm_score.h"

#include "shell/classic.h"

namespace quillop {
namespace {
constexpr int kBorder = 1;  // thin fixed border
}

FrmScore::FrmScore(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("frmScore"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(kBorder);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, QColor(0x80, 0x80, 0x80));  // the border line
    setPalette(palette);
    setAutoFillBackground(true);
    // The panel never takes the focus and handles no input.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(px(5850) + 2 * kBorder, px(360) + 2 * kBorder);

    const QFont plain = classicFont(12);
    const QFont bold = classicFont(12, true);
    // Label positions are in the client area, inside the border.
    auto place = [](double left, double width) { return twipsRect(left, 0, width, 375).translated(kBorder, kBorder); };
    Label1[0] = classicLabel(this, QStringLiteral("Score:"), place(120, 855), Qt::white, plain);
    lblScore = classicLabel(this, QStringLiteral("0"), place(960, 1575), QColor(0x00, 0xFF, 0x00), bold);
    Label1[1] = classicLabel(this, QStringLiteral("Level:"), place(2760, 855), Qt::white, plain);
    lblLevel = classicLabel(this, QStringLiteral("1"), place(3480, 495), QColor(0xFF, 0xFF, 0x00), bold);
    Label1[2] = classicLabel(this, QStringLiteral("Lives:"), place(4200, 855), Qt::white, plain);
    lblLives = classicLabel(this, QStringLiteral("3"), place(4920, 375), QColor(0xFF, 0x00, 0x00), bold);
    lblScore->setObjectName(QStringLiteral("lblScore"));
    lblLevel->setObjectName(QStringLiteral("lblLevel"));
    lblLives->setObjectName(QStringLiteral("lblLives"));
}

void FrmScore::Form_Load() { move(0, 0); }

void FrmScore::setWidthTwips(float twips) { resize(std::max(px(twips), 1), height()); }

}  // namespace quillop
