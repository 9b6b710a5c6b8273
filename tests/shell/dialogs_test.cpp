// The dialogs: the high-score entry (Enter and OK alike), the help window and the about box.
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "shell/frm_help.h"
#include "shell/quillop_app.h"
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

        // The same dialog again: the last name is still in the box; OK stores as Enter did.
        emptySettings();
        QString previous;
        whenModal([&](QWidget* w) {
            auto* dialog = static_cast<FrmHighscore*>(w);
            previous = dialog->txtHighscorer->text();
            dialog->cmdOK->click();
        });
        app.showHighscoreDialog();
        QCOMPARE(previous, QStringLiteral("Ann "));
        QCOMPARE(store.read("Gorvane", "Highscore", "") + "|" + store.read("Gorvane", "Highscorer", ""), byEnter);
        QVERIFY(!app.frmHighscore().isVisible());
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
        QCOMPARE(about->lblVersion->text(), QStringLiteral("Version 2.0.0"));
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
};

QTEST_MAIN(DialogsTest)
#include "dialogs_test.moc"
