#include "shell/frm_mdi.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QTimer>

#include "shell/classic.h"

namespace quillop {

FrmMDI::FrmMDI() {
    setObjectName(QStringLiteral("frmMDI"));
    setWindowTitle(QStringLiteral("Quillop"));
    auto* client = new QWidget(this);
    client->setObjectName(QStringLiteral("mdiClient"));
    QPalette palette = client->palette();
    palette.setColor(QPalette::Window, Qt::black);
    client->setPalette(palette);
    client->setAutoFillBackground(true);
    setCentralWidget(client);

    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    mnuNewGame = file->addAction(QStringLiteral("&New Game"));
    mnuNewGame->setObjectName(QStringLiteral("mnuNewGame"));
    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    mnuHelpWindow = help->addAction(QStringLiteral("&Help Window"));
    mnuHelpWindow->setObjectName(QStringLiteral("mnuHelpWindow"));
    mnuAbout = help->addAction(QStringLiteral("&About"));
    mnuAbout->setObjectName(QStringLiteral("mnuAbout"));
    connect(mnuNewGame, &QAction::triggered, this, [this] { if (onNewGame) onNewGame(); });
    connect(mnuHelpWindow, &QAction::triggered, this, [this] { if (onHelpWindow) onHelpWindow(); });
    connect(mnuAbout, &QAction::triggered, this, [this] { if (onAbout) onAbout(); });
}

float FrmMDI::remembered(const Remembered& r, int pixels) {
    return r.pixels == pixels ? r.twips : twips(pixels);
}

QSize FrmMDI::decorations() const {
    return frameGeometry().size() - geometry().size();
}

float FrmMDI::top() { return remembered(top_, pos().y()); }
float FrmMDI::left() { return remembered(left_, pos().x()); }
float FrmMDI::height() { return held_ ? height_.twips : remembered(height_, frameGeometry().height()); }
float FrmMDI::width() { return held_ ? width_.twips : remembered(width_, frameGeometry().width()); }

void FrmMDI::holdForReplay() {
    width_ = {width(), frameGeometry().width()};
    height_ = {height(), frameGeometry().height()};
    held_ = windowState();
}

WindowState FrmMDI::windowState() {
    if (held_) return *held_;
    if (isMinimized()) return kMinimized;
    if (isMaximized()) return kMaximized;
    return kNormal;
}

void FrmMDI::setTop(float t) {
    top_ = {t, px(t)};
    move(pos().x(), top_.pixels);
}
void FrmMDI::setLeft(float l) {
    left_ = {l, px(l)};
    move(left_.pixels, pos().y());
}
void FrmMDI::setHeight(float h) {
    const int outer = std::max(px(h), 1);
    height_ = {h, outer};
    wantedOuter_.setHeight(outer);
    resize(QMainWindow::width(), std::max(outer - decorations().height(), 1));
}
void FrmMDI::setWidth(float w) {
    const int outer = std::max(px(w), 1);
    width_ = {w, outer};
    wantedOuter_.setWidth(outer);
    resize(std::max(outer - decorations().width(), 1), QMainWindow::height());
}

void FrmMDI::setWindowState(WindowState state) {
    // Asking for the state the frame is already in changes nothing and raises no event.
    if (state == windowState()) return;
    if (held_) held_ = state;
    Qt::WindowStates states = QMainWindow::windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
    if (state == kMinimized) states |= Qt::WindowMinimized;
    if (state == kMaximized) states |= Qt::WindowMaximized;
    QMainWindow::setWindowState(states);
}

void FrmMDI::setScorePanelWidth(float twips) {
    if (onScorePanelWidth) onScorePanelWidth(twips);
}

void FrmMDI::adoptDecorations() {
    // The window manager frames the window only once it is shown. The outer size asked for
    // before that is then given again, so the frame keeps the size the store remembers
    // instead of growing by its decorations on every run.
    // Only in the normal state: a maximised frame is given back its old size on restore.
    if (windowState() != kNormal || !isVisible()) return;
    const QSize now = decorations();
    if (now == knownDecorations_) return;
    knownDecorations_ = now;
    // The window manager is told the smallest outer size too, so that a corner dragged by
    // the user stops there as well; the rule itself still handles the program's own sizes.
    setMinimumSize(std::max(px(MdiFrame::kMinimumWidth) - now.width(), 1), std::max(px(MdiFrame::kMinimumHeight) - now.height(), 1));
    if (!wantedOuter_.isValid()) return;
    const QSize wanted = wantedOuter_;
    resize(std::max(wanted.width() - now.width(), 1), std::max(wanted.height() - now.height(), 1));
}

void FrmMDI::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    // Decorations arrive asynchronously after the first map; look for them a few times.
    for (int delay : {0, 30, 100, 300, 1000}) QTimer::singleShot(delay, this, [this] { adoptDecorations(); });
}

void FrmMDI::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    adoptDecorations();
    // A size the user gives the frame is kept as the one to come back to.
    if (windowState() == kNormal && isVisible() && decorations() == knownDecorations_)
        wantedOuter_ = frameGeometry().size();
    if (onResize && !held_) onResize();
}

void FrmMDI::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    adoptDecorations();
}

void FrmMDI::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange) return;
    const WindowState state = windowState();
    if (state == lastState_) return;
    lastState_ = state;
    if (onResize && !held_) onResize();
}

void FrmMDI::closeEvent(QCloseEvent* event) {
    // The frame never refuses to close.
    if (onClose) onClose();
    event->accept();
}

}  // namespace quillop
