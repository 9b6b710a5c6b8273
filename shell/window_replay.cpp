#include "shell/window_replay.h"

#include <QCoreApplication>
#include <QFile>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>

#include "shell/quillop_app.h"

namespace quillop {
namespace {

constexpr qint64 kEventNs = 15'625'000;  // 64 timer events a second

}  // namespace

std::optional<replay::Scenario> readRecording(const QString& file) {
    try {
        return replay::parseScenario(replay::readScenarioFile(QFile::encodeName(file).toStdString()));
    } catch (const replay::ScenarioError& e) {
        std::fprintf(stderr, "Quillop2: %s: %s\n", qPrintable(file), e.message.c_str());
        return std::nullopt;
    }
}

void prepareReplay(const replay::Scenario& recording, QuillopApp::Options& options) {
    options.replaying = true;
    options.timer = false;
    options.replaySeed = recording.seed;
    options.replayWidth = recording.width;
    options.replayHeight = recording.height;
    options.replayHighscoreText = recording.highscoreText;
    options.replayHighscorer = recording.highscorer;
}

WindowReplay::WindowReplay(QuillopApp& app, const replay::Scenario& scenario)
    : app_(app), scenario_(scenario), runner_(scenario_.commands, *this) {
    QtEventPump& pump = app_.pump();
    pump.onWaitBegins = [this] { waits_.waitBegins(); };
    auto refresh = std::move(pump.beforeEach);
    // At the first pump of a wait, the commands recorded in it happen.
    pump.beforeEach = [this, refresh] {
        if (refresh) refresh();
        waits_.pumped();
    };
    app_.recordedAnswer = [this] {
        questionOpen_ = true;
        const bool yes = answerer_();
        questionOpen_ = false;
        return yes;
    };
    app_.recordedName = [this] { return name_; };
    app_.frmMDI().holdForReplay();
    app_.frmGorvane().takePlayerInput(false);
    app_.frmMDI().mnuNewGame->setEnabled(false);
    app_.frmMDI().mnuHelpWindow->setEnabled(false);
}

void WindowReplay::start() {
    clock_.start();
    QTimer::singleShot(0, this, [this] { next(); });
}

void WindowReplay::next() {
    if (finished_) return;
    // Inside a tick (its explosion's wait, the Congrats! dialog) no timer event runs.
    if (app_.program().gorvane().tickRunning()) {
        QTimer::singleShot(5, this, [this] { next(); });
        return;
    }
    try {
        if (!runner_.step()) {
            stop(QString());
            return;
        }
    } catch (const replay::ReplayError& e) {
        stop(QStringLiteral("line %1: %2").arg(e.line).arg(QString::fromStdString(e.message)));
        return;
    } catch (const replay::SnapshotError& e) {
        stop(QStringLiteral("line %1: %2").arg(e.line).arg(QString::fromStdString(e.message)));
        return;
    }
    ++events_;
    const qint64 dueNs = events_ * kEventNs - clock_.nsecsElapsed();
    // A late event runs at once; a long stall (a dialog) starts the rhythm anew.
    if (dueNs < -4 * kEventNs) {
        clock_.restart();
        events_ = 0;
    }
    QTimer::singleShot(static_cast<int>(std::max<qint64>(dueNs, 0) / 1'000'000), Qt::PreciseTimer, this,
                       [this] { next(); });
}

void WindowReplay::stop(const QString& problem) {
    finished_ = true;
    app_.afterEvent();
    if (problem.isEmpty()) {
        std::fprintf(stderr, "Quillop2: the recorded game has been played to its end\n");
        return;
    }
    std::fprintf(stderr, "Quillop2: the recording does not play back: %s\n", qPrintable(problem));
    // Not modal: the frame still closes (and ends the program) while the message is up.
    auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Quillop"),
                                QStringLiteral("This recording does not play back as it was recorded.\n\n%1").arg(problem),
                                QMessageBox::Ok, &app_.frmMDI());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

void WindowReplay::settle(int ms) {
    QElapsedTimer waited;
    waited.start();
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 5);
    } while (waited.elapsed() < ms);
}

void WindowReplay::move(double x, double y) {
    app_.program().gorvane().Form_MouseMove(static_cast<Single>(x), static_cast<Single>(y));
    app_.afterEvent();
}

void WindowReplay::press(double x, double y) {
    app_.program().gorvane().Form_MouseDown(static_cast<Single>(x), static_cast<Single>(y));
    app_.afterEvent();
}

void WindowReplay::play() {
    // A hidden button cannot be clicked.
    Gorvane& g = app_.program().gorvane();
    if (help_ || g.cmdPlay.Visible == kFalse) return;
    g.cmdPlay_Click();
    app_.afterEvent();
}

void WindowReplay::drop() {
    Gorvane& g = app_.program().gorvane();
    if (help_ || g.cmdDrop.Visible == kFalse) return;
    g.cmdDrop_Click();
    app_.afterEvent();
}

void WindowReplay::askNewGame() {
    if (help_) return;
    app_.newGame();
}

void WindowReplay::help() {
    if (help_) return;
    help_ = std::make_unique<FrmHelp>(&app_.frmMDI(), app_.program().help(), app_.pictures());
    help_->setModal(false);
    help_->QDialog::show();
    app_.afterEvent();
}

void WindowReplay::closeHelp() {
    if (!help_) return;
    help_->cmdClose->click();
    help_.reset();
    app_.afterEvent();
}

void WindowReplay::minimize() {
    FrmMDI& frame = app_.frmMDI();
    if (help_ || frame.windowState() == kMinimized) return;
    frame.setWindowState(kMinimized);
    frame.onResize();
}

void WindowReplay::restore() {
    FrmMDI& frame = app_.frmMDI();
    if (help_ || frame.windowState() != kMinimized) return;
    frame.setWindowState(kNormal);
    frame.onResize();
}

void WindowReplay::resize(double width, double height) {
    if (help_) return;
    // The frame whose rule arranges the playfield at the recorded size.
    FrmMDI& frame = app_.frmMDI();
    frame.setWidth(static_cast<float>((width + 2 * FrmGorvane::kBorder) * kTwipsPerPixel + MdiFrame::kFieldMarginWidth));
    frame.setHeight(static_cast<float>((height + 2 * FrmGorvane::kBorder) * kTwipsPerPixel + MdiFrame::kFieldMarginHeight));
    frame.onResize();
}

bool WindowReplay::timerEvent() {
    Gorvane& g = app_.program().gorvane();
    if (g.Timer1.Enabled == kFalse || g.tickRunning()) return false;
    if (questionOpen_) settle(15);  // the question is up: ticks still come 64 times a second
    waits_.tickBegins();
    app_.runTick();
    return true;
}

std::uint64_t WindowReplay::ticksRun() const { return app_.ticksRun(); }

Program& WindowReplay::program() { return app_.program(); }

void WindowReplay::snapshot(const std::string& file) {
    // What the screen shows: the field painted, then read back from the display.
    FrmGorvane& field = app_.frmGorvane();
    app_.afterEvent();
    field.canvas()->repaint();
    settle(30);
    const QPoint at = field.canvas()->mapTo(&app_.frmMDI(), QPoint(0, 0));
    QScreen* screen = app_.frmMDI().screen();
    const QPixmap shot = screen ? screen->grabWindow(app_.frmMDI().winId(), at.x(), at.y(), field.canvas()->width(),
                                                     field.canvas()->height())
                                : QPixmap();
    if (shot.isNull() || !shot.save(QString::fromStdString(file), "PNG"))
        throw replay::SnapshotError{0, "cannot write snapshot " + file};
}

}  // namespace quillop
