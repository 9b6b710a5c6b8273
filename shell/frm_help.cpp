#include "shell/frm_help.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>

#include "game/controls.h"
#include "platform/qt/shape_paint.h"
#include "resources/assets.h"

namespace quillop {
namespace {

const QColor kTealFill(0x00, 0xC0, 0xC0);
const QColor kLightCyan(0x80, 0xFF, 0xFF);
const QColor kNavy(0x00, 0x00, 0x80);
const QColor kLightBlue(0x80, 0x80, 0xFF);

// The two puck shapes, in the window's pixels (it measures itself in pixels).
constexpr float kPuckLeft = 24, kPuckTop = 160, kPuckSize = 6;
constexpr float kPuck2Left = 48, kPuck2Top = 144, kPuck2Size = 10;

bool strictlyInside(float x, float y, float left, float top, float size) {
    return left < x && x < static_cast<float>(left + size) && top < y && y < static_cast<float>(top + size);
}

}  // namespace

FrmHelp::FrmHelp(QWidget* parent, HelpRules& rules, const PictureSet& pictureSet)
    : QDialog(parent), rules_(rules) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Help"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setFixedSize(354, 420);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, Qt::black);
    setPalette(palette);
    setAutoFillBackground(true);
    setModal(true);

    cmdTips = new QPushButton(QStringLiteral("Tips"), this);
    cmdTips->setGeometry(twipsRect(4080, 5280, 1095, 375));
    cmdClose = new QPushButton(QStringLiteral("Close"), this);
    cmdClose->setGeometry(twipsRect(4080, 5760, 1095, 375));
    txtHelp = new QPlainTextEdit(this);
    txtHelp->setObjectName(QStringLiteral("txtHelp"));
    txtHelp->setGeometry(twipsRect(120, 120, 5055, 1095));
    txtHelp->setReadOnly(true);
    // The classic box kept its text close to its edge: the four tips fill its four lines.
    txtHelp->document()->setDocumentMargin(1);
    QPalette text = txtHelp->palette();
    text.setColor(QPalette::Base, kNavy);
    text.setColor(QPalette::Text, Qt::white);
    txtHelp->setPalette(text);
    for (QWidget* w : {static_cast<QWidget*>(cmdTips), static_cast<QWidget*>(cmdClose), static_cast<QWidget*>(txtHelp)})
        w->setFont(classicFont(8));
    for (QPushButton* b : {cmdTips, cmdClose}) b->setAutoDefault(false);
    setTabOrder(cmdTips, cmdClose);
    setTabOrder(cmdClose, txtHelp);

    lblHelp = classicLabel(this, QStringLiteral("Click on an object."), twipsRect(120, 1320, 2055, 375),
                           QColor(0xFF, 0xFF, 0x00), classicFont(12), true);

    struct Place {
        HelpObject object;
        Pic picture;
        QRect box;
    };
    // The help's paddle is a plain 32 x 4 bitmap, not the playfield's icon.
    auto object_is_paddle = [](HelpObject o) { return o == HelpObject::Paddle; };
    const Place places[] = {
        {HelpObject::Catfish, Pic::Catfish, twipsRect(960, 6120, 1125, 1125)},
        {HelpObject::Mine, Pic::Mine0, twipsRect(1440, 1920, 480, 480)},
        {HelpObject::Energypod, Pic::Energypod0, twipsRect(2640, 1800, 720, 720)},
        {HelpObject::Pointspod, Pic::Pointspod, twipsRect(4080, 2280, 600, 600)},
        {HelpObject::Paddle, Pic::Paddle0, twipsRect(360, 3000, 480, 60)},
        {HelpObject::Seeker, Pic::Seeker, twipsRect(1680, 3480, 480, 480)},
        {HelpObject::Diamond, Pic::Diamond, twipsRect(3360, 3840, 360, 330)},
        {HelpObject::Sidestopper, Pic::Sidestopper, twipsRect(480, 3960, 150, 1125)},
        {HelpObject::Club, Pic::Club, twipsRect(2880, 4320, 480, 480)},
        {HelpObject::Knight, Pic::Knight, twipsRect(3960, 4320, 360, 330)},
        {HelpObject::Queen, Pic::Queen, twipsRect(3480, 4680, 480, 480)},
    };
    for (const Place& place : places) {
        QImage image = pictureSet.image(place.picture);
        if (object_is_paddle(place.object)) image = QImage(QString::fromLatin1(assets::kHelpPaddle));
        auto* box = new PictureBox(this, image, place.box);
        const HelpObject object = place.object;
        if (object == HelpObject::Paddle) {
            box->onClick = [this, object] { show(HelpRules::DescriptionOf(object)); };
        } else {
            box->onPress = [this, object](QPointF at) {
                // Measured in twips from the picture's corner: presses on the transparent
                // rest of an icon do not count.
                if (HelpRules::PressCountsOn(object, twips(1) * static_cast<float>(at.x()),
                                             twips(1) * static_cast<float>(at.y())))
                    show(HelpRules::DescriptionOf(object));
            };
        }
        pictures[object] = box;
    }
    // The Catfish sits lowest; every other picture is drawn above it.
    pictures[HelpObject::Catfish]->lower();

    struct Points {
        const char* text;
        double left, top;
    };
    const Points points[] = {{"500", 2760, 2520}, {"1500", 4200, 3000}, {"50", 720, 4440},
                             {"200", 1200, 5760}, {"1000", 3240, 4320}, {"2500", 1920, 3480}};
    const QFont pointsFont = classicFont(12);
    for (int k = 0; k < 6; ++k) {
        const QString caption = QString::fromLatin1(points[k].text);
        const int width = QFontMetrics(pointsFont).horizontalAdvance(caption) + 4;
        lblPoints[k] = classicLabel(this, caption, QRect(px(points[k].left), px(points[k].top), width, px(255)),
                                    QColor(0xFF, 0x80, 0x00), pointsFont, true);
    }

    connect(cmdTips, &QPushButton::clicked, this, [this] { show(HelpRules::TipsText()); });
    connect(cmdClose, &QPushButton::clicked, this, [this] { cmdClose_Click(); });

    show(HelpRules::WelcomeText());
    const HelpRules::Position place = rules_.Form_Load();
    move(px(place.Left), px(place.Top));
}

QString FrmHelp::helpText() const { return text_; }

void FrmHelp::show(const char* text) {
    text_ = QString::fromLatin1(text);
    // The box shows "\r\n" as one line break.
    txtHelp->setPlainText(QString(text_).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

void FrmHelp::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    QPainter painter(this);
    paintShape(painter, shapeBox(kPuck2Left, kPuck2Top, kPuck2Size, kPuck2Size), kShapeSquare, kFillDiagonalCross,
               kTealFill, kLightCyan);
    paintShape(painter, shapeBox(kPuckLeft, kPuckTop, kPuckSize, kPuckSize), kShapeCircle, kFillSolid, kTealFill,
               kLightCyan);
    // The Catfish's frame, under its picture; only its top edge is inside the window.
    paintShape(painter, twipsRect(960, 6120, 1095, 1095), kShapeSquare, kFillSolid, kNavy, kLightBlue);
}

void FrmHelp::mousePressEvent(QMouseEvent* event) {
    // The shapes take no presses of their own: the background tests both, in order.
    const auto x = static_cast<float>(event->position().x());
    const auto y = static_cast<float>(event->position().y());
    if (strictlyInside(x, y, kPuckLeft, kPuckTop, kPuckSize)) show(HelpRules::DescriptionOf(HelpObject::Puck));
    if (strictlyInside(x, y, kPuck2Left, kPuck2Top, kPuck2Size))
        show(HelpRules::DescriptionOf(HelpObject::EnergizedPuck));
}

void FrmHelp::cmdClose_Click() {
    hide();  // ends the modal showing
    rules_.cmdClose_Click();
    // Query-unload: the place it was closed at.
    closing_ = true;
    rules_.SaveHelpSettings(twips(pos().y()), twips(pos().x()));
    done(QDialog::Accepted);
}

void FrmHelp::closeEvent(QCloseEvent* event) {
    if (!closing_) event->ignore();
}

}  // namespace quillop
