#include "shell/quillop_app.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <utility>
#include <ctime>

#include "shell/classic.h"
#include "shell/frm_help.h"
#include "shell/on_screen.h"

namespace quillop {

namespace {

// Runs an action once, soon after the first paint of the widget it watches.
class FirstPaintWatch : public QObject {
public:
    FirstPaintWatch(QObject* parent, std::function<void()> action) : QObject(parent), action_(std::move(action)) {}
    void fire() {
        if (auto action = std::exchange(action_, nullptr)) QTimer::singleShot(0, parent(), action);
        deleteLater();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && action_) fire();
        return false;
    }

private:
    std::function<void()> action_;
};

}  // namespace

void startupMark(const char* what) {
    static const bool enabled = qEnvironmentVariableIntValue("QUILLOP_STARTUP_LOG") != 0;
    static QElapsedTimer clock;
    if (!enabled) return;
    if (!clock.isValid()) {
        clock.start();
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        std::fprintf(stderr, "startup epoch ns %lld\n", now.tv_sec * 1000000000LL + now.tv_nsec);
    }
    std::fprintf(stderr, "startup %7.1f ms  %s\n", clock.nsecsElapsed() / 1e6, what);
}

QuillopApp::QuillopApp() : QuillopApp(Options{}) {}

QuillopApp::QuillopApp(Options options) : options_(options), surface_(pictures_, 0, 0) {
    startupMark("settings, sound, pictures");
    frame_ = std::make_unique<FrmMDI>();
    score_ = new FrmScore(frame_->client());
    playfield_ = new FrmGorvane(frame_->client(), surface_);
    // Main shows them, after the frame.
    score_->hide();
    playfield_->hide();

    startupMark("windows");
    program_ = std::make_unique<Program>(ProgramWorld{sound_, *this, settings_, surface_, *playfield_, *frame_,
                                                      clock_, pump_});
    startupMark("program");
    playfield_->bind(*program_, [this] { afterEvent(); });
    pump_.setBeforeEach([](void* self) { static_cast<QuillopApp*>(self)->playfield_->refresh(); }, this);

    frame_->onResize = [this] {
        program_->frame.Form_Resize();
        afterEvent();
    };
    frame_->onScorePanelWidth = [this](float twips) {
        frmScore();  // touching the panel loads it
        if (!scoreLoaded_) {
            scoreLoaded_ = true;
            score_->Form_Load();
        }
        score_->setWidthTwips(twips);
    };
    frame_->onNewGame = [this] { newGame(); };
    frame_->onHelpWindow = [this] { openHelp(); };
    frame_->onAbout = [this] { openAbout(); };
    frame_->onClose = [this] { closeAll(); };

    pacer_ = std::make_unique<TickPacer>(TickPacer::Hooks{
        [this] { return program_->gorvaneLoaded() ? program_->gorvane().Timer1 : TimerModel{}; },
        [this] { return program_->gorvaneLoaded() && program_->gorvane().tickRunning(); },
        [this] {
            program_->gorvane().Timer1_Timer();
            playfield_->refresh();
        }});
}

QuillopApp::~QuillopApp() {
    pacer_->stop();
    // The windows go before the program whose models they read.
    if (about_) delete about_;
    highscore_.reset();
    frame_.reset();
}

void QuillopApp::Main() {
    program_->frame.Form_Load();
    keepFrameOnScreen();
    startupMark("frame loaded");
    frame_->show();
    startupMark("frame shown");
    // The frame's first resize has arranged (and so loaded) the playfield; make sure of it
    // where the window system sent no resize.
    if (!program_->gorvaneLoaded()) frame_->onResize();
    if (!scoreLoaded_) {
        scoreLoaded_ = true;
        score_->Form_Load();
    }
    score_->show();
    playfield_->show();
    afterEvent();
    if (options_.timer) pacer_->start();
    // Finding the sound system and decoding the sounds take a while and compete with the
    // first frame for the two cores the game may have: they wait until the playfield has
    // been painted (or a second has passed, if the window is never painted).
    if (options_.sound) {
        auto* firstPaint = new FirstPaintWatch(frame_.get(), [this] { sound_.start(); });
        playfield_->canvas()->installEventFilter(firstPaint);
        QTimer::singleShot(1000, firstPaint, [firstPaint] { firstPaint->fire(); });
    }
}

void QuillopApp::afterEvent() {
    playfield_->refresh();
    if (pacer_) pacer_->sync();
}

void QuillopApp::setScoreLabel(const std::string& text) { score_->lblScore->setText(QString::fromStdString(text)); }
void QuillopApp::setLevelLabel(const std::string& text) { score_->lblLevel->setText(QString::fromStdString(text)); }
void QuillopApp::setLivesLabel(const std::string& text) { score_->lblLives->setText(QString::fromStdString(text)); }
void QuillopApp::setFrameCaption(const std::string& text) {
    frame_->setWindowTitle(QString::fromStdString(text));
}

FrmHighscore& QuillopApp::frmHighscore() {
    // Loaded on its first showing and only hidden afterwards: it keeps the last name.
    if (!highscore_) highscore_ = std::make_unique<FrmHighscore>(frame_.get(), program_->highscore);
    return *highscore_;
}

void QuillopApp::showHighscoreDialog() {
    playfield_->refresh();
    frmHighscore().showModal();
    saveSettings();  // the best score and its holder, together
}

bool QuillopApp::askYesNo(const std::string& question) {
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Quillop"), QString::fromStdString(question),
                    QMessageBox::Yes | QMessageBox::No, frame_.get());
    box.setObjectName(QStringLiteral("questionBox"));
    return box.exec() == QMessageBox::Yes;
}

void QuillopApp::keepFrameOnScreen() {
    FrmMDI& frame = *frame_;
    const QRect stored(px(frame.left()), px(frame.top()), px(frame.width()), px(frame.height()));
    const QRect placed = placeOnTodaysScreens(stored);
    if (placed.x() != stored.x()) frame.setLeft(twips(placed.x()));
    if (placed.y() != stored.y()) frame.setTop(twips(placed.y()));
    if (placed.width() != stored.width()) frame.setWidth(twips(placed.width()));
    if (placed.height() != stored.height()) frame.setHeight(twips(placed.height()));
}

void QuillopApp::saveSettings(bool closing) {
    const std::string failure = settings_.commit();
    if (failure.empty() || saveFailureShown_) return;
    saveFailureShown_ = true;  // once a run: the next saves are tried, but not announced again
    QString text = QStringLiteral("Your best score and window places could not be saved: %1.")
                       .arg(QString::fromStdString(failure));
    if (!closing)
        text += QStringLiteral("\n\nThe game keeps them while it runs and tries again at the next save "
                               "(a new best score, closing the help window or the game).");
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Quillop"), text, QMessageBox::Ok, frame_.get());
    box.setObjectName(QStringLiteral("saveFailedBox"));
    box.exec();
}

void QuillopApp::newGame() {
    program_->frame.mnuNewGame_Click();
    afterEvent();
}

void QuillopApp::openHelp() {
    FrmHelp help(frame_.get(), program_->help(), pictures_);
    afterEvent();  // the timer has just been stopped
    help.exec();
    saveSettings();
    afterEvent();
}

void QuillopApp::openAbout() {
    if (about_) {
        about_->raise();
        about_->activateWindow();
        return;
    }
    about_ = new FrmAbout(frame_.get(), [this] { program_->mod.playSound("arsedeath.wav"); });
    about_->show();
}

void QuillopApp::closeAll() {
    // Query-unload of the frame, then of its children; the frame's unload ends the program.
    program_->frame.Form_QueryUnload();
    if (program_->gorvaneLoaded()) program_->gorvane().Form_QueryUnload();
    pacer_->stop();
    saveSettings(true);
    if (about_) about_->close();
    QTimer::singleShot(0, qApp, [] { QCoreApplication::quit(); });
}

}  // namespace quillop
