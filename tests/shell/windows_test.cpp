// The windows: the frame's pixels and placement, the question boxes, the score panel, what
// the playfield shows, the high-score entry, the help window and the about box. Which rule
// a window follows is tested headless (tests/core); what the window manager and the pointer
// do, end to end (tests/e2e). Here, what only the widgets show.
#include <QBackingStore>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSet>
#include <QTest>

#include "game/settings_values.h"
#include "resources/assets.h"
#include "shell/classic.h"
#include "shell/frm_help.h"
#include "shell/game_application.h"
#include "shell/on_screen.h"
#include "shell/version.h"
#include "shell_rig.h"

using namespace quillop;
using namespace quillop::test;

namespace {
// What the window shows of a widget: its part of the window's backing store, in device pixels.
QImage shownOnScreen(QWidget* widget) {
    const qreal ratio = widget->devicePixelRatioF();
    const QRect box(QPointF(widget->mapTo(widget->window(), QPoint(0, 0)) * ratio).toPoint(),
                    QSizeF(QSizeF(widget->size()) * ratio).toSize());
    QPaintDevice* store = widget->window()->backingStore()->paintDevice();
    const QImage all = store->devType() == QInternal::Pixmap ? static_cast<QPixmap*>(store)->toImage()
                                                             : *static_cast<QImage*>(store);
    return all.copy(box).convertToFormat(QImage::Format_RGB32);
}

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

class WindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { emptySettings(); }

    // The outer size once the window system has framed the frame, and the children in pixels.
    void frameArrangesItsChildrenInPixels() {
        QuietApp app;
        FrmGorvane& field = app.frmGorvane();
        QTRY_COMPARE(app.frmMDI().width(), 7000.0f);
        QTRY_COMPARE(app.frmMDI().height(), 6000.0f);
        QCOMPARE(app.frmScore().width(), 433);  // 6500 twips
        // The playfield's drawing area is its inside, and the surface matches it.
        QCOMPARE(app.surface().image().size(), QSize(int(field.scaleWidth()), int(field.scaleHeight())));
        QCOMPARE(int(field.scaleWidth()), 441 - 2 * FrmGorvane::kBorder);
        app.frmMDI().setWidth(3000);  // too small: snapped back, the children following
        QTRY_COMPARE(app.frmMDI().width(), 6000.0f);
        QTRY_COMPARE(app.frmScore().width(), 367);  // 5500 twips
    }

    // A placement remembered from a desktop that has changed since: a screen gone, a title
    // bar out of reach, too little showing, a size bigger than the screen.
    void framePlacementIsCheckedAgainstTodaysScreens() {
        const QRect a(0, 0, 1920, 1050), b(1920, 0, 1280, 1024), fallback(20, 20, 800, 600);
        const struct { QRect stored; QList<QRect> screens; QRect placed; } cases[] = {
            {{2000, 100, 800, 600}, {a, b}, {2000, 100, 800, 600}},
            {{2000, 100, 800, 600}, {a}, fallback},                 // B unplugged
            {{100, -40, 800, 600}, {a, b}, fallback},               // title bar above
            {{1840, 100, 800, 600}, {a}, fallback},                 // 80 px showing
            {{1820, 100, 800, 600}, {a}, {1820, 100, 800, 600}},    // 100 px
            {{100, 1010, 800, 600}, {a}, fallback},                 // 40 px high
            {{1500, 10, 800, 600}, {a, b}, {1500, 10, 800, 600}},   // across both
            {{10, 10, 3000, 2000}, {a, b}, {10, 10, 1920, 1050}},
            {{-5000, 0, 3000, 2000}, {b, a}, b},
        };
        for (const auto& c : cases) QCOMPARE(placeOnScreens(c.stored, c.screens), c.placed);
        // The frame itself, stored far off to the left and wider than this screen.
        QtSettingsStore store;
        writePlacement(store, "MDI", {300, -30000, 6000, 60000});
        QCOMPARE(store.commit(), std::string());
        QuietApp app;
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY(screen.width() < 4000);
        QCOMPARE(app.frmMDI().left(), twips(screen.left()));  // as wide as the screen, so moved in to fit
        QCOMPARE(app.frmMDI().top(), twips(screen.top() + 20));
        QTRY_COMPARE(app.frmMDI().width(), twips(screen.width()));
        QCOMPARE(app.frmMDI().height(), 6000.0f);
    }

    // When New Game asks is the rules', its answers are given end to end; here, the box.
    void newGameAsksInAPlainBox() {
        QuietApp app;
        app.frmGorvane().cmdPlay->click();
        QString shown;
        whenModal([&](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            shown = box->windowTitle() + "|" + box->text() + "|" + QString::number(box->icon());
            box->button(QMessageBox::No)->click();
        });
        app.newGame();
        QCOMPARE(shown, QStringLiteral("Quillop|Chickening out of the current game?|0"));
        QCOMPARE(app.program().gorvane().Timer1.Enabled, kTrue);  // No: the game goes on
    }

    // The labels' texts are the rules'; here, that each reaches its own label, in its colour.
    void scorePanelShowsTheTick() {
        QuietApp app;
        FrmScore& panel = app.frmScore();
        QCOMPARE(panel.lblScore->palette().color(QPalette::WindowText), QColor(0, 255, 0));
        QCOMPARE(panel.lblLives->palette().color(QPalette::WindowText), QColor(255, 0, 0));
        QVERIFY(panel.lblLevel->font().bold() && !panel.Label1[1]->font().bold());
        app.frmGorvane().cmdPlay->click();
        app.program().mod.Score = 3250;
        app.program().gorvane().Timer1_Timer();
        QCOMPARE(panel.lblScore->text() + " " + panel.lblLevel->text() + " " + panel.lblLives->text(),
                 QStringLiteral("3250 1 2"));
    }

    void playfieldShowsSurfaceAndPuck() {
        QuietApp app;
        FrmGorvane& field = app.frmGorvane();
        Gorvane& game = app.program().gorvane();
        const QImage& surface = app.surface().image();
        field.cmdPlay->click();
        ShapeModel& puck = game.shapePuck;
        puck.Left = 100;
        puck.Top = 50;
        const auto shown = [&field] {
            field.refresh();
            return field.canvas()->grab().toImage();
        };
        QCOMPARE(shown().size(), surface.size());
        QCOMPARE(QColor(shown().pixel(104, 54)), QColor(Qt::white));         // solid white fill
        QCOMPARE(QColor(shown().pixel(100, 54)), QColor(0xC0, 0xC0, 0xC0));  // its border
        QCOMPARE(QColor(shown().pixel(100, 50)), QColor(surface.pixel(100, 50)));  // corner: the surface
        // The lost puck's look: a dark red rounded square; hidden, it leaves the surface.
        puck.Shape = kShapeRoundedSquare;
        puck.FillColor = kExplodedRed;
        QCOMPARE(QColor(shown().pixel(104, 54)), QColor(0xC0, 0, 0));
        puck.Visible = kFalse;
        QCOMPARE(shown().pixel(104, 54), surface.pixel(104, 54));
        // The controls follow their models (what the game paints reaching the screen is the
        // paddle's test).
        game.cmdDrop.Visible = kTrue;
        game.cmdDrop.Left = 30;
        shown();
        QVERIFY(field.cmdDrop->isVisible());
        QCOMPARE(field.cmdDrop->x(), 30);
        for (const QString& message : {QStringLiteral("Insert Coin"), QStringLiteral("You Win !!")})  // never cut off
            QVERIFY(QFontMetrics(field.Label7->font()).horizontalAdvance(message) < field.Label7->width());
    }

    // A pointer move paints the paddle at once (not black) and leaves showing it to the next
    // tick; with no tick running it is still on screen within one tick's time.
    void paddleShownWithinATickWithoutTicks() {
        QuietApp app;  // no timer: no tick will come
        QWidget* canvas = app.frmGorvane().canvas();
        QTRY_VERIFY(canvas->isVisible());
        int x = 100;
        QVERIFY(onSomeTry([&] {
            QTest::qWait(100);  // each try from rest: no show of an earlier one still pending
            QTest::mouseMove(canvas, QPoint(x += 50, 250));
            const QRect paddle(x - 16, 248, 32, 4);
            const QImage drawn = app.surface().image().copy(paddle);
            QTest::qWait(FrmGorvane::kShowSoonMs + 10);
            return drawn != QImage(drawn.size(), drawn.format()) && shownOnScreen(canvas).copy(paddle) == drawn;
        }));
    }

    // At any scale (run again under QT_SCALE_FACTOR 1.5 and 2), what the window shows after
    // a few hundred partial repaints is what a full repaint of the same moment shows: no
    // edge of the puck or a sprite is left behind outside the repainted areas.
    void playedFieldMatchesAFreshRepaint() {
        QuietApp app;
        FrmGorvane& field = app.frmGorvane();
        Gorvane& game = app.program().gorvane();
        QWidget* canvas = field.canvas();
        QTRY_VERIFY(canvas->isVisible());
        field.cmdPlay->click();
        game.Lives = 100;  // no game over and no dialog
        for (int tick = 0; tick < 600; ++tick) {
            if (game.cmdDrop.Visible == kTrue) field.cmdDrop->click();
            game.Timer1_Timer();
            field.refresh();
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
        QTest::qWait(50);
        const QImage shown = shownOnScreen(canvas);
        canvas->repaint();
        const QImage fresh = shownOnScreen(canvas);
        QCOMPARE(shown.size(), fresh.size());
        int stale = 0;
        for (int y = 0; y < shown.height(); ++y)
            for (int x = 0; x < shown.width(); ++x) stale += shown.pixel(x, y) != fresh.pixel(x, y);
        QCOMPARE(stale, 0);
    }

    // Stored as typed is the rules', Enter and OK clicked end to end; here the focus, the
    // score shown, and the last name offered again and taken by Tab and Space. The pauses
    // let the moved focus repaint, which must not pull the focus back.
    void highscoreEntryTakesTheNameByEnterOrTabAndSpace() {
        QuietApp app;
        app.program().mod.Score = 5000;
        QString shownScore, previous;
        whenModal([&](QWidget* w) {
            auto* dialog = static_cast<FrmHighscore*>(w);
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Congrats!"));
            QTRY_VERIFY(dialog->txtHighscorer->hasFocus());  // moved there by the paint
            shownScore = dialog->lblHighscore->text();
            QTest::keyClicks(dialog->txtHighscorer, QStringLiteral("Ann "));
            QTest::keyClick(dialog->txtHighscorer, Qt::Key_Return);
        });
        app.showHighscoreDialog();
        QCOMPARE(shownScore, QStringLiteral("5000"));
        QCOMPARE(QtSettingsStore().read("Gorvane", "Highscorer", ""), std::string("Ann "));
        emptySettings();
        whenModal([&](QWidget* w) {
            auto* dialog = static_cast<FrmHighscore*>(w);
            QTest::qWait(60);
            previous = dialog->txtHighscorer->text();
            QTest::keyClick(dialog->txtHighscorer, Qt::Key_Tab);
            QTest::qWait(60);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        });
        QTimer guard;  // a lost key must not hang the test
        guard.callOnTimeout([&app] { app.frmHighscore().hide(); });
        guard.start(3000);
        app.showHighscoreDialog();
        QCOMPARE(previous, QStringLiteral("Ann "));
        QCOMPARE(QtSettingsStore().read("Gorvane", "Highscorer", ""), std::string("Ann "));
    }

    // Also run at 1.5x and 2x. Which figure a press counts on is the rules' (in twips), the
    // help's place is stored end to end; here, where it opens, the pixels its presses land on,
    // and its texts and tips inside their boxes.
    void helpAnswersPressesOnItsPictures() {
        QuietApp app;
        QTRY_VERIFY(app.frmMDI().width() >= 6000.0f);  // framed (as wide as a small screen lets it): no resize to come
        QPoint place;
        QStringList helpOutside;
        int tipsScroll = -1;
        whenModal([&](QWidget* w) {
            auto* help = static_cast<FrmHelp*>(w);
            place = help->pos();
            QCOMPARE(nextTab(help->cmdTips), help->cmdClose);
            QCOMPARE(nextTab(help->cmdClose), help->txtHelp);
            QWidget* club = help->pictures.at(HelpObject::Club);
            const auto says = [](HelpObject o) { return QString::fromLatin1(HelpRules::DescriptionOf(o)); };
            const struct { QWidget* on; Qt::MouseButton button; QPoint at; QString says; } presses[] = {
                {club, Qt::RightButton, {30, 5}, QString::fromLatin1(HelpRules::WelcomeText())},  // past the figure
                {club, Qt::RightButton, {24, 21}, says(HelpObject::Club)},  // 360, 315 twips: on it
                {help, Qt::LeftButton, {27, 163}, says(HelpObject::Puck)},  // inside the puck circle
                {help, Qt::LeftButton, {48, 150}, says(HelpObject::Puck)},  // on shapePuck2's edge: not inside
                {help, Qt::LeftButton, {53, 149}, says(HelpObject::EnergizedPuck)},
            };
            for (const auto& p : presses) {
                QTest::mousePress(p.on, p.button, {}, p.at);
                QCOMPARE(help->helpText(), p.says);
            }
            QTest::mouseClick(help->pictures.at(HelpObject::Paddle), Qt::LeftButton, {}, QPoint(3, 2));  // a click, not a press
            QCOMPARE(help->helpText(), says(HelpObject::Paddle));
            helpOutside = textsOutsideTheirBoxes(help);
            help->cmdTips->click();
            QVERIFY(help->txtHelp->toPlainText().endsWith(QStringLiteral("level 9 to win the game.")));
            QTest::qWait(20);
            tipsScroll = help->txtHelp->verticalScrollBar()->maximum();
            QTest::keyClick(help, Qt::Key_Escape);  // no cancel button: still open
            QVERIFY(help->isVisible());
            help->cmdClose->click();
        });
        app.openHelp();
        QCOMPARE(place, QPoint(13, 27));  // Left 200, Top 400 twips
        QVERIFY2(helpOutside.isEmpty(), qPrintable(helpOutside.join("; ")));
        QCOMPARE(tipsScroll, 0);  // the tips fit the box
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
        answerModals([told, answering](QWidget* modal) {
            if (!*answering) return false;
            if (auto* help = dynamic_cast<FrmHelp*>(modal)) help->cmdClose->click();
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                *told << box->text();
                box->button(QMessageBox::Ok)->click();
            }
            return true;
        });
        {
            QuietApp app;
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
        QuietApp app;
        app.openAbout();
        QPointer<FrmAbout> about = app.frmAbout();
        QVERIFY(about && about->isVisible() && !about->isModal());
        QCOMPARE(about->lblVersion->text(), QStringLiteral("Version ") + QLatin1String(kVersion));
        QVERIFY(about->lblDisclaimer->text().contains(QStringLiteral("GPL, version 3 or later")));
        QCOMPARE(nextTab(about->cmdOK), about->cmdSysInfo);
        QVERIFY(about->cmdOK->isDefault());
        app.openAbout();
        QCOMPARE(app.frmAbout(), about.data());
        if (FrmAbout::systemInfoTool().isEmpty()) {
            QString text;
            whenModal([&](QWidget* w) {
                auto* box = qobject_cast<QMessageBox*>(w);
                text = box->windowTitle() + "|" + box->text();
                box->button(QMessageBox::Ok)->click();
            });
            about->cmdSysInfo->click();
            QCOMPARE(text, QStringLiteral("Quillop|") + QString::fromLatin1(FrmAbout::unavailableText()));
            QVERIFY(about->isVisible());
        }
        about->cmdOK->click();
        QTRY_VERIFY(about.isNull());  // unloaded
        app.openAbout();
        QVERIFY(app.frmAbout());
    }

    // Also run at 1.5x and 2x. Captions stand apart from their values.
    void everyTextSitsInItsBox() {
        QuietApp app;
        FrmScore& panel = app.frmScore();
        app.openAbout();
        for (QWidget* window : {static_cast<QWidget*>(&panel), static_cast<QWidget*>(&app.frmHighscore()),
                                static_cast<QWidget*>(app.frmAbout())})
            QVERIFY2(textsOutsideTheirBoxes(window).isEmpty(), qPrintable(textsOutsideTheirBoxes(window).join("; ")));
        const std::pair<QLabel*, QLabel*> pairs[] = {
            {panel.Label1[0], panel.lblScore}, {panel.Label1[1], panel.lblLevel}, {panel.Label1[2], panel.lblLives}};
        for (const auto& [caption, value] : pairs)
            QVERIFY2(caption->x() + caption->fontMetrics().horizontalAdvance(caption->text()) + 4 <= value->x(),
                     qPrintable(caption->text()));
    }

    // Also run at 1.5x and 2x: a picture is shown in blocks of its own pixels, no colour added.
    void picturesScaleWithoutSmoothing() {
        QuietApp app;
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

    // A counter that overflows in a tick is a bug: the game stops with a message instead of
    // the exception escaping the timer's event (which ends the process at once). Last, as
    // the program then ends its event loops.
    void failingRuleStopsTheGameWithAMessage() {
        QuillopApp::Options options = quiet();
        options.timer = true;
        QuietApp app(options);
        app.frmGorvane().cmdPlay->click();
        app.program().gorvane().SeekerTimer = 32767;  // the next tick counts past an Integer
        QString box, text;
        whenModal([&](QWidget* w) {
            box = w->objectName();
            text = qobject_cast<QMessageBox*>(w)->text();
            qobject_cast<QMessageBox*>(w)->button(QMessageBox::Ok)->click();
        });
        QTRY_COMPARE(box, QStringLiteral("ruleFailedBox"));
        QVERIFY(text.contains(QStringLiteral("Integer overflow")));
        const std::uint64_t ticks = app.ticksRun();
        QTest::qWait(100);
        QCOMPARE(app.ticksRun(), ticks);  // no tick runs after it
    }
};

// The program's own application object, which catches what a rule throws.
int main(int argc, char** argv) {
    GameApplication application(argc, argv);
    WindowsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "windows_test.moc"
