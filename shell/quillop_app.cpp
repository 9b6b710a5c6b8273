#include "shell/quillop_app.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <utility>

#include "game/base/utf8_text.h"
#include "replay/trace.h"
#include "shell/classic.h"
#include "shell/frm_help.h"
#include "shell/game_application.h"
#include "shell/on_screen.h"
#include "shell/replay_shelf.h"
#include "shell/startup_log.h"

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

QuillopApp::QuillopApp() : QuillopApp(Options{}) {}

namespace {

// A replay reads the recording's best score and holder, and the size the playfield loaded
// with when the game was recorded.
void prepareReplaySettings(const QuillopApp::Options& options, MemorySettings& memory) {
    auto outerTwips = [](double inner) {
        return replay::GameRecorder::number((inner + 2 * FrmGorvane::kBorder) * kTwipsPerPixel);
    };
    memory.values["Gorvane/Width"] = outerTwips(options.replayWidth);
    memory.values["Gorvane/Height"] = outerTwips(options.replayHeight);
    if (options.replayHighscoreText) memory.values["Gorvane/Highscore"] = *options.replayHighscoreText;
    if (options.replayHighscorer) memory.values["Gorvane/Highscorer"] = *options.replayHighscorer;
}

}  // namespace

QuillopApp::QuillopApp(Options options) : options_(options), surface_(pictures_, 0, 0) {
    startupMark("settings, sound, pictures");
    prepareClock();
    createWindows();
    startupMark("windows");
    program_ = std::make_unique<Program>(ProgramWorld{sound_, *this, settingsStore(), surface_, *playfield_,
                                                      *frame_, clock_, pump_});
    startupMark("program");
    wireFrame();
    wirePlayfield();
    wirePacer();
    openTrace();
    if (GameApplication* application = gameApplication())
        application->onRuleFailure = [this](const std::exception& failure) { endOnRuleFailure(failure); };
}

SettingsStore& QuillopApp::settingsStore() {
    if (options_.replaying) return replaySettings_;
    return settings_;
}

void QuillopApp::prepareClock() {
    if (options_.replaying) {
        prepareReplaySettings(options_, replaySettings_);
        clock_.setSeed(options_.replaySeed);
    }
    // The pods and Arses placed by the playfield's load depend on its size then, before
    // the frame arranges it: a recording starts from that size.
    clock_.onSeedAsked = [this] {
        loadWidth_ = playfield_->scaleWidth();
        loadHeight_ = playfield_->scaleHeight();
    };
}

void QuillopApp::createWindows() {
    frame_ = std::make_unique<FrmMDI>();
    score_ = new FrmScore(frame_->client());
    playfield_ = new FrmGorvane(frame_->client(), surface_);
    // Main shows them, after the frame.
    score_->hide();
    playfield_->hide();
}

void QuillopApp::wireFrame() {
    frame_->onResize = [this] {
        program_->frame.Form_Resize();
        recordFrameResize();
        afterEvent();
    };
    frame_->onScorePanelWidth = [this](float twips) {
        loadScorePanel();
        score_->setWidthTwips(twips);
    };
    frame_->onNewGame = [this] { newGame(); };
    frame_->onHelpWindow = [this] { openHelp(); };
    frame_->onAbout = [this] { openAbout(); };
    frame_->onClose = [this] { closeAll(); };
}

void QuillopApp::wirePlayfield() {
    playfield_->bind(*program_, [this] { afterEvent(); });
    pump_.beforeEach = [this] { playfield_->refresh(); };
    pump_.onWaitBegins = [this] {
        if (recorder_) recorder_->waitBegins();
    };
}

void QuillopApp::wirePacer() {
    pacer_ = std::make_unique<TickPacer>();
    pacer_->timerModel = [this] { return program_->gorvaneLoaded() ? program_->gorvane().Timer1 : TimerModel{}; };
    pacer_->busy = [this] { return program_->gorvaneLoaded() && program_->gorvane().tickRunning(); };
    pacer_->onTick = [this] { runTick(); };
}

void QuillopApp::openTrace() {
    if (options_.traceFile.isEmpty()) return;
    trace_ = std::fopen(QFile::encodeName(options_.traceFile).constData(), "wb");
    if (!trace_) std::fprintf(stderr, "Quillop2: cannot write the trace to %s\n", qPrintable(options_.traceFile));
}

void QuillopApp::loadScorePanel() {
    // Touching the panel loads it, once.
    if (scoreLoaded_) return;
    scoreLoaded_ = true;
    score_->Form_Load();
}

QuillopApp::~QuillopApp() {
    if (GameApplication* application = gameApplication()) application->onRuleFailure = nullptr;
    pacer_->stop();
    if (keeping_.valid()) keeping_.wait();
    writeTrace(true);
    if (trace_) std::fclose(trace_);
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
    loadScorePanel();
    score_->show();
    playfield_->show();
    if (!options_.replaysFolder.isEmpty() && !options_.replaying) startRecording();
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
    caption_ = text;
    frame_->setWindowTitle(QString::fromStdString(text));
}

void QuillopApp::runTick() {
    Gorvane& g = program_->gorvane();
    const bool wasPlaying = program_->mod.GameOver == kFalse;
    const double highscoreBefore = program_->mod.Highscore;
    if (recorder_) recorder_->tickBegins();
    g.Timer1_Timer();
    ++ticksRun_;
    if (recorder_) recorder_->tickEnds();
    if (trace_) {
        replay::appendTraceLine(traceBuffer_, *program_, ticksRun_, caption_);
        writeTrace(false);
    }
    if (wasPlaying && program_->mod.GameOver != kFalse) gameEnded(highscoreBefore);
    playfield_->refresh();
}

void QuillopApp::writeTrace(bool all) {
    if (!trace_ || traceBuffer_.empty() || (!all && traceBuffer_.size() < (1 << 16))) return;
    std::fwrite(traceBuffer_.data(), 1, traceBuffer_.size(), trace_);
    std::fflush(trace_);
    traceBuffer_.clear();
}

void QuillopApp::record(const std::string& line) {
    if (recorder_) recorder_->command(line);
}

void QuillopApp::startRecording() {
    replay::GameRecorder::Start start;
    start.width = loadWidth_;
    start.height = loadHeight_;
    start.seed = program_->rnd.state();
    start.highscore = program_->mod.Highscore;
    start.highscorer = program_->mod.Highscorer;
    recorder_ = std::make_unique<replay::GameRecorder>(start);
    // Only now: every pointer move would otherwise be written out as a line for nobody.
    playfield_->onCommand = [this](const std::string& line) { record(line); };
    // The frame has arranged the playfield since; the recording takes it from here.
    recordedState_ = kNormal;
    recordFrameResize();
}

void QuillopApp::recordFrameResize() {
    // The frame's rule ran: a change of state, or else the playfield's size it arranged.
    const WindowState state = frame_->windowState();
    const int before = std::exchange(recordedState_, state);
    if (state == kMinimized) {
        if (before != kMinimized) record("minimize");
        return;
    }
    if (before == kMinimized) record("restore");
    record("resize " + replay::GameRecorder::number(playfield_->scaleWidth()) + " " +
           replay::GameRecorder::number(playfield_->scaleHeight()));
}

void QuillopApp::gameEnded(double highscoreBefore) {
    if (!recorder_) return;
    const ModQuillop& mod = program_->mod;
    recorder_->expect(ticksRun_, mod.Score, program_->rnd.draws());
    // Written on a thread of its own: the tick that ended the game must not wait for a disk.
    if (keeping_.valid()) keeping_.wait();
    keeping_ = std::async(std::launch::async, [folder = options_.replaysFolder, text = recorder_->text(),
                                               score = mod.Score, best = mod.Score > highscoreBefore] {
        ReplayShelf(folder).keep(text, score, best);
    });
}

FrmHighscore& QuillopApp::frmHighscore() {
    // Loaded on its first showing and only hidden afterwards: it keeps the last name.
    if (!highscore_) highscore_ = std::make_unique<FrmHighscore>(frame_.get(), program_->highscore);
    return *highscore_;
}

void QuillopApp::showHighscoreDialog() {
    playfield_->refresh();
    if (recordedName) {
        // The recorded name is typed and OK pressed once the player has seen the dialog.
        FrmHighscore& dialog = frmHighscore();
        QTimer::singleShot(1200, &dialog, [&dialog, name = recordedName()] {
            dialog.txtHighscorer->setText(QString::fromStdString(name));
            dialog.cmdOK->click();
        });
    }
    frmHighscore().showModal();
    // The name goes in before the tick that asked for it: a replay types it when asked.
    record("name " + program_->mod.Highscorer);
    saveSettings();  // the best score and its holder, together
}

bool QuillopApp::askYesNo(const std::string& question) {
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Quillop"), QString::fromStdString(question),
                    QMessageBox::Yes | QMessageBox::No, frame_.get());
    box.setObjectName(QStringLiteral("questionBox"));
    if (recordedAnswer) {
        // Shown while the recorded game goes on under it, until the recorded answer.
        box.setModal(false);
        box.show();
        return recordedAnswer();
    }
    const bool yes = box.exec() == QMessageBox::Yes;
    if (recorder_) recorder_->questionAnswered(yes);
    return yes;
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
    if (options_.replaying) return;
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
    if (recorder_) recorder_->newGameClicked();
    program_->frame.mnuNewGame_Click();
    if (recorder_) recorder_->newGameDone();
    afterEvent();
}

void QuillopApp::openHelp() {
    record("help");
    FrmHelp help(frame_.get(), program_->help(), pictures_);
    afterEvent();  // the timer has just been stopped
    help.exec();
    record("closehelp");
    saveSettings();
    afterEvent();
}

void QuillopApp::openAbout() {
    if (about_) {
        about_->raise();
        about_->activateWindow();
        return;
    }
    about_ = new FrmAbout(frame_.get(), [this] { program_->mod.playSound(Sound::ArseDeath); });
    about_->show();
}

void QuillopApp::endOnRuleFailure(const std::exception& failure) {
    if (std::exchange(ruleFailed_, true)) return;
    pacer_->stop();
    writeTrace(true);
    const std::string what = visibleText(failure.what());
    std::fprintf(stderr, "Quillop2: tick %llu: %s\n", static_cast<unsigned long long>(ticksRun_ + 1), what.c_str());
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Quillop"),
                    QStringLiteral("The game has stopped: one of its rules failed (%1). This is a bug in "
                                   "the game.\n\nYour best score and settings are as they were last saved.")
                        .arg(QString::fromStdString(what)),
                    QMessageBox::Ok, frame_.get());
    box.setObjectName(QStringLiteral("ruleFailedBox"));
    box.exec();
    QCoreApplication::exit(3);
}

void QuillopApp::closeAll() {
    // Query-unload of the frame, then of its children; the frame's unload ends the program.
    program_->frame.Form_QueryUnload();
    if (program_->gorvaneLoaded()) program_->gorvane().Form_QueryUnload();
    pacer_->stop();
    writeTrace(true);
    saveSettings(true);
    if (about_) about_->close();
    QTimer::singleShot(0, qApp, [] { QCoreApplication::quit(); });
}

}  // namespace quillop
