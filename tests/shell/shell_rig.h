// Helpers for driving the windows from a test: an empty settings file, a program without
// sound or timer, and answering the modal windows that the next step opens.
#pragma once

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "platform/qt/qt_settings_store.h"
#include "shell/quillop_app.h"

namespace quillop::test {

// The settings file of a private, empty home, so that a test run by hand never touches
// the player's own file.
inline void emptySettings() {
    static QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/.config").toUtf8());
    QFile::remove(QtSettingsStore().fileName());
}

// The program's windows up, silent, and without a timer ticking only when the test says so.
struct QuietApp : QuillopApp {
    explicit QuietApp(bool timer = false) : QuillopApp(quiet(timer)) { Main(); }
    static Options quiet(bool timer) {
        Options options;
        options.sound = false;
        options.timer = timer;
        return options;
    }
};

// Runs `act` on the next modal window once it is up (the caller then opens it and blocks),
// looking for it every 10 ms. A window still up 10 s later is hidden, which ends its wait:
// a lost key fails the test instead of hanging it.
inline void whenModal(std::function<void(QWidget*)> act) {
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [act, poll] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible()) return QTimer::singleShot(10, *poll);
        QTimer::singleShot(10000, modal, &QWidget::hide);
        act(modal);
    };
    QTimer::singleShot(10, *poll);
}

// A timing on a machine shared with other work: a run that meets the bound on any of three
// tries passes; a fault that misses it misses it on every try.
template <typename Try>
bool onSomeTry(Try attempt) { return attempt() || attempt() || attempt(); }

}  // namespace quillop::test
