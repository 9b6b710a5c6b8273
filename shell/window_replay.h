// A recorded game played back in the window at its own pace: the recording's commands act
// on the real windows (the paddle follows the recorded pointer, the dialogs show and close
// by themselves), one timer event every 1/64 s. The player's pointer does not steer it.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <memory>
#include <optional>

#include "replay/runner.h"
#include "shell/frm_help.h"
#include "shell/quillop_app.h"

namespace quillop {

class QuillopApp;

// The recording in FILE, read and checked whole; nothing (and the reason on stderr) if it
// cannot be read or is not a scenario.
std::optional<replay::Scenario> readRecording(const QString& file);
// What the program needs to know before it starts to replay: the recording's generator
// start, best score and holder; no timer of its own.
void prepareReplay(const replay::Scenario& recording, QuillopApp::Options& options);

class WindowReplay : public QObject, public replay::ReplayTarget {
public:
    WindowReplay(QuillopApp& app, const replay::Scenario& scenario);
    // Starts playing.
    void start();
    bool finished() const { return finished_; }

    // ReplayTarget
    void move(double x, double y) override;
    void press(double x, double y) override;
    void play() override;
    void drop() override;
    void askNewGame() override;
    void help() override;
    void closeHelp() override;
    void minimize() override;
    void restore() override;
    void resize(double width, double height) override;
    void setName(const std::string& name) override { name_ = name; }
    bool timerEvent() override;
    int waitsInLastTick() const override { return waits_.waits(); }
    std::uint64_t ticksRun() const override;
    Program& program() override;
    void snapshot(const std::string& file) override;
    void setWaitListener(std::function<void(int)> listener) override { waits_.listen(std::move(listener)); }
    void setQuestionAnswerer(std::function<bool()> answerer) override { answerer_ = std::move(answerer); }

private:
    void next();
    void stop(const QString& problem);
    // Lets the window show what happened, for up to `ms`, without the player's input.
    void settle(int ms);

    QuillopApp& app_;
    replay::Scenario scenario_;
    std::function<bool()> answerer_;
    std::string name_;
    std::unique_ptr<FrmHelp> help_;
    replay::WaitCounter waits_;
    bool questionOpen_ = false;
    bool finished_ = false;
    QElapsedTimer clock_;
    qint64 events_ = 0;  // timer events played
    // Last: it hands its listeners to the members above as it is made.
    replay::ScenarioRunner runner_;
};

}  // namespace quillop
