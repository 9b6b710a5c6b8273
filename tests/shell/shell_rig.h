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
    QtSettingsStore store;
    QFile::remove(store.fileName());
}

inline QuillopApp::Options quiet() {
    QuillopApp::Options options;
    options.sound = options.timer = false;
    return options;
}

// The program's windows up, silent, ticking only when the test says so.
struct QuietApp : QuillopApp {
    explicit QuietApp(Options options = quiet()) : QuillopApp(options) { Main(); }
};

// Calls `act` every 10 ms with the modal window that is up (or null) until it returns false.
inline void answerModals(std::function<bool(QWidget*)> act) {
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [act, poll] {
        QWidget* modal = QApplication::activeModalWidget();
        if (act(modal && modal->isVisible() ? modal : nullptr)) QTimer::singleShot(10, *poll);
    };
    QTimer::singleShot(10, *poll);
}

// Runs `act` on the next modal window once it is up (the caller then opens it and blocks).
inline void whenModal(std::function<void(QWidget*)> act) {
    answerModals([act](QWidget* modal) {
        if (modal) act(modal);
        return !modal;
    });
}

// A timing on a machine shared with other work: a run that meets the bound on any of three
// tries passes; a fault that misses it misses it on every try.
template <typename Try>
bool onSomeTry(Try attempt) {
    for (int k = 0; k < 3; ++k)
        if (attempt()) return true;
    return false;
}

}  // namespace quillop::test
