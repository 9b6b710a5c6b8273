// Quillop: the windowed program.
#include <QApplication>
#include <QIcon>

#include "resources/assets.h"
#include "shell/quillop_app.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillop"));
    QApplication::setOrganizationName(QStringLiteral("Quillop"));
    QApplication::setApplicationVersion(QStringLiteral("2.0.0"));
    // The frame's icon, taken over by every window that loads after it.
    QApplication::setWindowIcon(quillop::assets::programIcon());
    // Closing the about box must not end the program; only the frame's unload does.
    QApplication::setQuitOnLastWindowClosed(false);
    quillop::QuillopApp quillop;
    quillop.Main();
    return app.exec();
}
