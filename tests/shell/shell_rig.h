// Helpers for driving the windows from a test: an empty settings file, and answering the
// modal window that the next step opens.
#pragma once

#include <QApplication>
#include <QFile>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "platform/qt/qt_settings_store.h"

namespace quillop::test {

inline void emptySettings() {
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
