// Helpers for driving the windows from a test: an empty settings file, and answering the
// modal window that the next step opens.
#pragma once

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "platform/qt/qt_settings_store.h"

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

// Runs `act` on the modal window once it is up (the caller then opens it and blocks).
inline void whenModal(std::function<void(QWidget*)> act) {
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [act, poll] {
        if (QWidget* modal = QApplication::activeModalWidget(); modal && modal->isVisible())
            act(modal);
        else
            QTimer::singleShot(10, *poll);
    };
    QTimer::singleShot(10, *poll);
}

}  // namespace quillop::test
