#include "shell/frm_highscore.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QSvgRenderer>

#include "resources/assets.h"
#include "shell/classic.h"

namespace quillop {
namespace {

// The Queen as a vector drawing, stretched to its box.
class VectorPicture : public QWidget {
public:
    VectorPicture(QWidget* parent, const QString& file, const QRect& geometry)
        : QWidget(parent), renderer_(file) {
        setGeometry(geometry);
        renderer_.setAspectRatioMode(Qt::IgnoreAspectRatio);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        if (!renderer_.isValid()) return;
        QPainter painter(this);
        renderer_.render(&painter, QRectF(rect()));
    }

private:
    QSvgRenderer renderer_;
};

}  // namespace

FrmHighscore::FrmHighscore(QWidget* parent, HighscoreEntry& rules) : QDialog(parent), rules_(rules) {
    setObjectName(QStringLiteral("frmHighscore"));
    setWindowTitle(QStringLiteral("Congrats!"));
    // A title bar with no control box and no minimise or maximise button.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setFixedSize(px(5580), px(2070));
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, Qt::black);
    setPalette(palette);
    setAutoFillBackground(true);
    setModal(true);

    Label2 = classicLabel(this, QStringLiteral("Your High Score: "), twipsRect(240, 240, 2175, 375), Qt::white,
                          classicFont(12, true), true);
    lblHighscore = classicLabel(this, QStringLiteral("1234567890"), twipsRect(2520, 240, 2775, 375),
                                QColor(0x00, 0xFF, 0x00), classicFont(12, true));
    lblHighscore->setObjectName(QStringLiteral("lblHighscore"));
    Label1 = classicLabel(this, QStringLiteral("Enter Your Name Here"), twipsRect(240, 840, 2175, 255), Qt::white,
                          classicFont(9.75), true);
    txtHighscorer = new QLineEdit(this);
    txtHighscorer->setObjectName(QStringLiteral("txtHighscorer"));
    txtHighscorer->setGeometry(twipsRect(2520, 720, 2775, 420));
    txtHighscorer->setFont(classicFont(12));
    QPalette field = txtHighscorer->palette();
    field.setColor(QPalette::Base, Qt::white);
    field.setColor(QPalette::Text, Qt::black);
    txtHighscorer->setPalette(field);
    imgQueen = new VectorPicture(this, QString::fromLatin1(assets::kQueenDrawing), twipsRect(960, 1320, 480, 570));
    imgQueen->setObjectName(QStringLiteral("imgQueen"));
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(twipsRect(2520, 1440, 1455, 375));
    cmdOK->setFont(classicFont(8));
    // OK is not the default button: Enter in the name box stores through its own handler,
    // once, exactly as a click on OK does.
    cmdOK->setAutoDefault(false);
    cmdOK->setDefault(false);
    setTabOrder(txtHighscorer, cmdOK);

    connect(txtHighscorer, &QLineEdit::returnPressed, this, [this] { SaveHighscore(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { SaveHighscore(); });
}

void FrmHighscore::showModal() {
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect frame = frameGeometry();
        // Before its first showing the window manager has not framed it yet; the frame
        // window's own decorations are the best guess for its title bar and borders.
        if (frame == geometry() && parentWidget()) {
            const QWidget* owner = parentWidget()->window();
            const QPoint inset = owner->geometry().topLeft() - owner->frameGeometry().topLeft();
            frame = QRect(geometry().topLeft() - inset,
                          size() + owner->frameGeometry().size() - owner->geometry().size());
        }
        frame.moveCenter(screen->geometry().center());
        move(frame.topLeft());
    }
    exec();
}

void FrmHighscore::paintEvent(QPaintEvent* event) {
    // The rule belongs to the dialog's own surface being painted (shown or uncovered). A
    // control redrawing itself also repaints the dialog behind it, but only inside that
    // control's box: taking the focus back then would cancel a press on OK or a Tab to it.
    if (paintsOwnSurface(event->region())) {
        const QString best = QString::fromStdString(rules_.Form_Paint());
        if (lblHighscore->text() != best) lblHighscore->setText(best);
        if (!txtHighscorer->hasFocus()) txtHighscorer->setFocus();
    }
    QDialog::paintEvent(event);
}

bool FrmHighscore::paintsOwnSurface(const QRegion& region) const {
    QRegion own = region;
    for (const QWidget* child : findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (child->isVisible()) own -= child->geometry();
    return !own.isEmpty();
}

void FrmHighscore::closeEvent(QCloseEvent* event) {
    // No control box: the window system cannot close it, only a stored name can.
    if (isVisible()) event->ignore();
}

void FrmHighscore::SaveHighscore() {
    rules_.SaveHighscore(txtHighscorer->text().toStdString());
    hide();
    done(QDialog::Accepted);
}

}  // namespace quillop
