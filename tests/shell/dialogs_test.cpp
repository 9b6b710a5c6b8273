// The dialogs: the high-score entry (Enter and OK alike), the help window and the about box.
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QScrollBar>
#include <QSet>
#include <QTest>

#include "resources/assets.h"
#include "shell/frm_help.h"
#include "shell/quillop_app.h"
#include "shell/version.h"
#include "shell_rig.h"

using namespace quillop;
using namespace quillop::test;

namespace {
// The next control Tab goes to.
QWidget* nextTab(QWidget* w) {
    for (QWidget* n = w->nextInFocusChain(); n != w; n = n->nextInFocusChain())
        if (n->focusPolicy() & Qt::TabFocus) return n;
    return w;
}
// Every label's and button's text inside its box: as wide as its advance, as high as its ink
// (the classic boxes are tight: a 12-point line is taller than some of them, its digits not).
QStringList textsOutsideTheirBoxes(QWidget* window) {
    QStringList outside;
    for (QWidget* w : window->findChildren<QWidget*>()) {
        auto* label = qobject_cast<QLabel*>(w);
        auto* button = qobject_cast<QPushButton*>(w);
        const QString text = label ? label->text() : button ? button->text().remove(QLatin1Char('&')) : QString();
        if (text.isEmpty() || !w->isVisibleTo(window)) continue;
        const QFontMetricsF metrics(w->font());
        const QRectF ink = metrics.tightBoundingRect(text);
        // where the line starts: at the top, or centred as a whole line
        const qreal line = label && (label->alignment() & Qt::AlignVCenter) ? (w->height() - metrics.height()) / 2 : 0;
        QSizeF needed(metrics.horizontalAdvance(text), line + metrics.ascent() + ink.bottom());
        if (label && label->wordWrap())
            needed = metrics.boundingRect(QRectF(0, 0, w->width(), 1e4), Qt::TextWordWrap, text).size();
        if (button) needed += QSizeF(6, 4);  // the face's edges
        if (needed.width() > w->width() || needed.height() > w->height() || line + metrics.ascent() + ink.top() < 0 ||
            !window->rect().contains(w->geometry()))
            outside << QStringLiteral("'%1' needs %2x%3 in %4x%5")
                           .arg(text).arg(needed.width()).arg(needed.height()).arg(w->width()).arg(w->height());
    }
    return outside;
}

}  // namespace

class DialogsTest : public QObject {
    Q_OBJECT
    static QuillopApp::Options quiet() {
        QuillopApp::Options options;
        options.sound = options.timer = false;
        return options;
    }

private slots:
    void init() { emptySettings(); }

    void highscoreStoresTheSameOnEnterAndOk() {
        QuillopApp app(quiet());
        app.Main();
        ModQuillop& mod = app.program().mod;
        QtSettingsStore store;

        mod.Score = 5000;
        QString shownScore;
        whenModal([&](QWidget* w) {
            auto* dialog = static_cast<FrmHighscore*>(w);
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Congrats!"));
            QTRY_VERIFY(dialog->txtHighscorer->hasFocus());  // moved there by the paint
            QCOMPARE(nextTab(dialog->txtHighscorer), dialog->cmdOK);
            shownScore = dialog->lblHighscore->text();
            QTest::keyClicks(dialog->txtHighscorer, QStringLiteral("Ann "));
            QTest::keyClick(dialog->txtHighscorer, Qt::Key_Return);
        });
        app.showHighscoreDialog();
        QCOMPARE(shownScore, QStringLiteral("5000"));
        QCOMPARE(mod.Highscore, 5000.0);
        const std::string byEnter = store.read("Gorvane", "Highscore", "") + "|" + store.read("Gorvane", "Highscorer", "");
        QCOMPARE(byEnter, std::string("5000|Ann "));  // not trimmed
        QCOMPARE(app.frmMDI().windowTitle(), QStringLiteral("Quillop High Score by Ann  - 5000"));

        // The same dialog again, stored by a mouse click on OK and then by Tab and Space: the
        // last name is still in the box and is stored as Enter stored it. The pauses let the
        // pressed button and the moved focus repaint, which must not pull the focus back.
        using Finish = std::function<void(FrmHighscore*)>;
        const Finish byMouse = [](FrmHighscore* d) {
            QTest::mousePress(d->cmdOK, Qt::LeftButton);
            QTest::qWait(60);
            QTest::mouseRelease(d->cmdOK, Qt::LeftButton);
        };
        const Finish byTabAndSpace = [](FrmHighscore* d) {
            QTest::keyClick(d->txtHighscorer, Qt::Key_Tab);
            QTest::qWait(60);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        };
        for (const Finish& finish : {byMouse, byTabAndSpace}) {
            emptySettings();
            QString previous;
            whenModal([&](QWidget* w) {
                auto* dialog = static_cast<FrmHighscore*>(w);
                QTest::qWait(60);
                previous = dialog->txtHighscorer->text();
                finish(dialog);
            });
            QTimer guard;  // a lost click must not hang the test
            guard.callOnTimeout([&app] { app.frmHighscore().hide(); });
            guard.start(3000);
            app.showHighscoreDialog();
            QCOMPARE(previous, QStringLiteral("Ann "));
            QCOMPARE(store.read("Gorvane", "Highscore", "") + "|" + store.read("Gorvane", "Highscorer", ""), byEnter);
            QVERIFY(!app.frmHighscore().isVisible());
        }
    }

    // The pause while help is open is the rules' (tests/core); here, what its pictures
    // answer to and where it is remembered.
    void helpExplainsAndRemembersItsPlace() {
        QuillopApp app(quiet());
        app.Main();
        QTRY_COMPARE(app.frmMDI().width(), 7000.0f);  // framed: no resize is still to come
        QPoint place;
        whenModal([&](QWidget* w) {
            auto* help = static_cast<FrmHelp*>(w);
            place = help->pos();
            QCOMPARE(help->windowTitle(), QStringLiteral("Help"));
            QCOMPARE(nextTab(help->cmdTips), help->cmdClose);
            QCOMPARE(nextTab(help->cmdClose), help->txtHelp);
            auto says = [&](HelpObject o) { return help->helpText() == QString::fromLatin1(HelpRules::DescriptionOf(o)); };
            PictureBox* club = help->pictures.at(HelpObject::Club);
            QTest::mousePress(club, Qt::RightButton, {}, QPoint(30, 5));  // past the figure (450 twips)
            QCOMPARE(help->helpText(), QString::fromLatin1(HelpRules::WelcomeText()));
            QTest::mousePress(club, Qt::RightButton, {}, QPoint(24, 21));  // 360, 315 twips: on it
            QVERIFY(says(HelpObject::Club));
            QTest::mouseClick(help->pictures.at(HelpObject::Paddle), Qt::LeftButton, {}, QPoint(3, 2));
            QVERIFY(says(HelpObject::Paddle));
            QTest::mousePress(help, Qt::LeftButton, {}, QPoint(27, 163));  // inside the puck circle
            QVERIFY(says(HelpObject::Puck));
            QTest::mousePress(help, Qt::LeftButton, {}, QPoint(48, 150));  // on shapePuck2's edge: not inside
            QVERIFY(says(HelpObject::Puck));
            QTest::mousePress(help, Qt::LeftButton, {}, QPoint(53, 149));
            QVERIFY(says(HelpObject::EnergizedPuck));
            help->cmdTips->click();
            QVERIFY(help->txtHelp->toPlainText().endsWith(QStringLiteral("level 9 to win the game.")));
            QTest::keyClick(help, Qt::Key_Escape);  // no cancel button: still open
            QVERIFY(help->isVisible());
            help->move(150, 90);
            help->cmdClose->click();
        });
        app.openHelp();
        QCOMPARE(place, QPoint(13, 27));  // Left 200, Top 400 twips
        QtSettingsStore store;
        QCOMPARE(store.read("Help", "Left", "") + " " + store.read("Help", "Top", ""), std::string("2250 1350"));
    }

    // A save that cannot happen says so once a run, in plain words with the place and the
    // reason; the next saves are tried again without another message.
    void failedSaveIsToldOnce() {
        QTemporaryDir config;
        const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
        QFile blocker(config.filePath(QStringLiteral("Quillop")));  // a file where the folder should be
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        auto told = std::make_shared<QStringList>();
        auto answering = std::make_shared<bool>(true);
        auto answer = std::make_shared<std::function<void()>>();
        *answer = [told, answering, answer] {
            if (!*answering) return;
            if (QWidget* modal = QApplication::activeModalWidget(); modal && modal->isVisible()) {
                if (auto* help = dynamic_cast<FrmHelp*>(modal)) help->cmdClose->click();
                if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                    *told << box->text();
                    box->button(QMessageBox::Ok)->click();
                }
            }
            QTimer::singleShot(10, *answer);
        };
        QTimer::singleShot(10, *answer);
        {
            QuillopApp app(quiet());
            app.Main();
            app.openHelp();  // its close saves its place
            app.frmMDI().close();
        }
        QTest::qWait(50);
        *answering = false;
        qputenv("XDG_CONFIG_HOME", saved);
        QCOMPARE(told->size(), 1);
        QVERIFY2(told->at(0).contains(config.filePath(QStringLiteral("Quillop"))) && told->at(0).contains("Not a directory"),
                 qPrintable(told->at(0)));
    }

    void aboutBoxIsModelessAndSingle() {
        QuillopApp app(quiet());
        app.Main();
        app.openAbout();
        QPointer<FrmAbout> about = app.frmAbout();
        QVERIFY(about && about->isVisible() && !about->isModal());
        QCOMPARE(about->windowTitle(), QStringLiteral("About Quillop"));
        QCOMPARE(about->lblTitle->text(), QStringLiteral("Quillop"));
        QCOMPARE(about->lblVersion->text(), QStringLiteral("Version ") + QLatin1String(kVersion));
        // The licence notice, whole inside its box.
        const QLabel* notice = about->lblDisclaimer;
        QVERIFY(notice->text().contains(QStringLiteral("GPL, version 3 or later")));
        QVERIFY2(notice->contentsRect().contains(notice->fontMetrics().boundingRect(
                     notice->contentsRect(), int(notice->alignment()) | Qt::TextWordWrap, notice->text())),
                 qPrintable(notice->text()));
        QCOMPARE(about->cmdSysInfo->text(), QStringLiteral("&System Info..."));
        QCOMPARE(nextTab(about->cmdOK), about->cmdSysInfo);
        QVERIFY(about->cmdOK->isDefault());
        app.openAbout();
        QCOMPARE(app.frmAbout(), about.data());
        if (FrmAbout::systemInfoTool().isEmpty()) {
            QString text;
            whenModal([&](QWidget* w) {
                auto* box = qobject_cast<QMessageBox*>(w);
                text = box->text();
                QCOMPARE(box->windowTitle(), QStringLiteral("Quillop"));
                box->button(QMessageBox::Ok)->click();
            });
            about->cmdSysInfo->click();
            QCOMPARE(text, QString::fromLatin1(FrmAbout::unavailableText()));
            QVERIFY(about->isVisible());
        }
        about->cmdOK->click();
        QTRY_VERIFY(about.isNull());  // unloaded
        app.openAbout();
        QVERIFY(app.frmAbout() && app.frmAbout() != nullptr);
    }

    // Also run at 2x. Captions stand apart from their values; the tips fit the help's box.
    void everyTextSitsInItsBox() {
        QuillopApp app(quiet());
        app.Main();
        FrmScore& panel = app.frmScore();
        QVERIFY2(textsOutsideTheirBoxes(&panel).isEmpty(), qPrintable(textsOutsideTheirBoxes(&panel).join("; ")));
        const std::pair<QLabel*, QLabel*> pairs[] = {
            {panel.Label1[0], panel.lblScore}, {panel.Label1[1], panel.lblLevel}, {panel.Label1[2], panel.lblLives}};
        for (const auto& [caption, value] : pairs)
            QVERIFY2(caption->x() + caption->fontMetrics().horizontalAdvance(caption->text()) + 4 <= value->x(),
                     qPrintable(caption->text()));
        QVERIFY2(textsOutsideTheirBoxes(&app.frmHighscore()).isEmpty(), qPrintable(textsOutsideTheirBoxes(&app.frmHighscore()).join("; ")));
        QCOMPARE(app.frmHighscore().Label2->geometry(), twipsRect(240, 240, 2175, 375));
        app.openAbout();
        QVERIFY2(textsOutsideTheirBoxes(app.frmAbout()).isEmpty(), qPrintable(textsOutsideTheirBoxes(app.frmAbout()).join("; ")));
        int tipsScroll = -1;
        QStringList helpOutside;
        whenModal([&](QWidget* w) {
            auto* help = static_cast<FrmHelp*>(w);
            helpOutside = textsOutsideTheirBoxes(help);
            help->cmdTips->click();
            QTest::qWait(20);
            tipsScroll = help->txtHelp->verticalScrollBar()->maximum();
            help->cmdClose->click();
        });
        app.openHelp();
        QVERIFY2(helpOutside.isEmpty(), qPrintable(helpOutside.join("; ")));
        QCOMPARE(tipsScroll, 0);
    }

    // Also run at 2x: a picture is shown in blocks of its own pixels, no colour added.
    void picturesScaleWithoutSmoothing() {
        QuillopApp app(quiet());
        app.Main();
        app.openAbout();
        const auto colours = [](const QImage& image) {
            QSet<QRgb> seen;
            const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
            for (int y = 0; y < rgb.height(); ++y)
                for (int x = 0; x < rgb.width(); ++x) seen.insert(rgb.pixel(x, y));
            return seen.size();
        };
        const QImage source(QString::fromLatin1(assets::kAboutPicture));
        const QImage shown = app.frmAbout()->picIcon->grab().toImage();
        QCOMPARE(shown.size(), source.size() * app.frmAbout()->devicePixelRatioF());
        QCOMPARE(colours(shown), colours(source));
    }
};

QTEST_MAIN(DialogsTest)
#include "dialogs_test.moc"
