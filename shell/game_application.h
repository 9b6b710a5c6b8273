// The program's application object. A rule that fails (a counter overflowing: a bug in the
// game, never a game event) throws; Qt cannot carry an exception out of an event handler,
// so it is caught here, where every event enters the program, and handed on.
#pragma once

#include <QApplication>
#include <exception>
#include <functional>

namespace quillop {

class GameApplication : public QApplication {
public:
    GameApplication(int& argc, char** argv) : QApplication(argc, argv) {}
    bool notify(QObject* receiver, QEvent* event) override;

    // Ends the game with a message; unset, the program leaves its event loop with status 3.
    std::function<void(const std::exception&)> onRuleFailure;
};

// The running GameApplication, or null under another application object.
GameApplication* gameApplication();

}  // namespace quillop
