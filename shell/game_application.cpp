#include "shell/game_application.h"

#include <cstdio>

namespace quillop {

bool GameApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& e) {
        if (onRuleFailure) {
            onRuleFailure(e);
        } else {
            std::fprintf(stderr, "Quillop2: %s\n", e.what());
            QCoreApplication::exit(3);
        }
        return true;
    }
}

GameApplication* gameApplication() { return dynamic_cast<GameApplication*>(QCoreApplication::instance()); }

}  // namespace quillop
