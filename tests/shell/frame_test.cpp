// The frame: its arrangement of the children, its placement in the settings store, the
// game timer's pauses, the New Game question, the score panel and what the playfield shows.
#include <QMessageBox>
#include <QPushButton>
#include <QBackingStore>
#include <QTest>

#include <QGuiApplication>
#include <QScreen>

#include "game/settings_values.h"
#include "shell/classic.h"
#include "shell/game_application.h"
#include "shell/on_screen.h"
#include "shell/quillop_app.h"
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
}  // namespace

class FrameTest : public QObject {
    Q_OBJECT
    static QuillopApp::Options quiet() {
        QuillopApp::Options options;
        options.sound = options.timer = false;
        return options;
    }

private slots:
    void init() { emptySettings(); }

    // The arrangement's numbers are the rules' (tests/core); here, that the windows take them
    // in pixels, the outer size once the window system has framed the frame.
    void emptyStoreOpensAtDefaultsAndArrangesChildren() {
        QuillopApp app(quiet());
        app.Main();
        FrameWindow& frame = app.frmMDI();
        PlayfieldWindow& field = app.frmGorvane();
        QTRY_COMPARE(frame.width(), 7000.0f);
        QTRY_COMPARE(frame.height(), 6000.0f);
        QCOMPARE(field.width(), 6620.0f);
        QCOMPARE(app.frmScore().width(), 433);  // 6500 twips
        QCOMPARE(app.frmMDI().windowTitle(), QStringLiteral("Quillop High Score by Ormswell - 0"));
        // The playfield's drawing area is its inside, and the surface matches it.
        QCOMPARE(app.surface().image().size(), QSize(int(field.scaleWidth()), int(field.scaleHeight())));
        QCOMPARE(int(field.scaleWidth()), 441 - 2 * FrmGorvane::kBorder);
        frame.setWidth(3000);  // too small: snapped back, the children following
        QTRY_COMPARE(frame.width(), 6000.0f);
        QTRY_COMPARE(app.frmScore().width(), 367);  // 5500 twips
    }

    // A placement remembered from a desktop that has changed since: a screen gone, a title
    // bar out of reach, too little showing, a size bigger than the screen.
    void framePlacementIsCheckedAgainstTodaysScreens() {
        const QRect a(0, 0, 1920, 1050), b(1920, 0, 1280, 1024);
        const QRect onB(2000, 100, 800, 600);
        QCOMPARE(placeOnScreens(onB, {a, b}), onB);
        QCOMPARE(placeOnScreens(onB, {a}), QRect(20, 20, 800, 600));               // B unplugged
        QCOMPARE(placeOnScreens(QRect(100, -40, 800, 600), {a, b}), QRect(20, 20, 800, 600));  // title bar above
        QCOMPARE(placeOnScreens(QRect(1840, 100, 800, 600), {a}), QRect(20, 20, 800, 600));    // 80 px showing
        QCOMPARE(placeOnScreens(QRect(1820, 100, 800, 600), {a}), QRect(1820, 100, 800, 600)); // 100 px
        QCOMPARE(placeOnScreens(QRect(100, 1010, 800, 600), {a}), QRect(20, 20, 800, 600));    // 40 px high
        QCOMPARE(placeOnScreens(QRect(1500, 10, 800, 600), {a, b}), QRect(1500, 10, 800, 600)); // across both
        QCOMPARE(placeOnScreens(QRect(10, 10, 3000, 2000), {a, b}), QRect(10, 10, 1920, 1050));
        QCOMPARE(placeOnScreens(QRect(-5000, 0, 3000, 2000), {b, a}), QRect(1920, 0, 1280, 1024));

        // The frame itself, stored far off to the left and wider than this screen.
        {
            QtSettingsStore store;
            writePlacement(store, "MDI", {300, -30000, 6000, 60000});
            QCOMPARE(store.commit(), std::string());
        }
        QuillopApp app(quiet());
        app.Main();
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY(screen.width() < 4000);
        QCOMPARE(app.frmMDI().left(), twips(screen.left()));  // as wide as the screen, so moved in to fit
        QCOMPARE(app.frmMDI().top(), twips(screen.top() + 20));
        QTRY_COMPARE(app.frmMDI().width(), twips(screen.width()));
        QCOMPARE(app.frmMDI().height(), 6000.0f);
    }

    // The window's own state changes reach the rules as resizes (the pause and its placement
    // rules are tested in tests/core, the stored state across runs end to end).
    void minimisingPausesAndPlacementSurvivesMaximised() {
        {
            QuillopApp app(quiet());
            app.Main();
            Gorvane& game = app.program().gorvane();
            FrameWindow& frame = app.frmMDI();
            frame.setLeft(450);
            frame.setWidth(8010);
            QTRY_COMPARE(app.program().frame.MDIPlacement().value_or(Placement{}).Width, 8010.0f);
            frame.setWindowState(kMinimized);
            QTRY_COMPARE(game.Timer1.Enabled, kFalse);
            frame.setWindowState(kNormal);
            QTRY_COMPARE(game.Timer1.Enabled, kTrue);
            QTest::qWait(50);  // the restore's own resize events
            game.Timer1.Enabled = kFalse;
            frame.setWindowState(kNormal);  // no change, so no resize: the timer stays off
            QTest::qWait(20);
            QCOMPARE(game.Timer1.Enabled, kFalse);
            frame.setWindowState(kMaximized);
            QTRY_COMPARE(game.Timer1.Enabled, kTrue);
            QTRY_VERIFY(frame.width() > 8010.0f);
            QCOMPARE(app.program().frame.MDIPlacement().value_or(Placement{}).Width, 8010.0f);
            app.frmMDI().close();  // saves the frame and the playfield
        }
        QtSettingsStore store;
        QCOMPARE(store.read("MDI", "Width", ""), std::string("8010"));
        QCOMPARE(store.read("MDI", "Left", ""), std::string("450"));
        QCOMPARE(store.read("MDI", "Windowstate", ""), std::string("2"));
        QCOMPARE(store.read("Gorvane", "Highscorer", ""), std::string("Ormswell"));
        QuillopApp again(quiet());
        again.Main();
        QTRY_COMPARE(again.frmMDI().windowState(), kMaximized);
        again.frmMDI().setWindowState(kNormal);
        QTRY_COMPARE(again.frmMDI().width(), 8010.0f);
        QCOMPARE(again.frmMDI().left(), 450.0f);
    }

    // When New Game asks is the rules' (tests/core); here, the question box and its answers.
    void newGameAsksInAPlainBox() {
        QuillopApp app(quiet());
        app.Main();
        Gorvane& game = app.program().gorvane();
        app.frmGorvane().cmdPlay->click();
        QVERIFY(!app.frmGorvane().cmdPlay->isVisible());
        QString shown;
        whenModal([&](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            shown = box->windowTitle() + "|" + box->text() + "|" + QString::number(box->icon());
            box->button(QMessageBox::No)->click();
        });
        app.newGame();
        QCOMPARE(shown, QStringLiteral("Quillop|Chickening out of the current game?|0"));
        QCOMPARE(game.Timer1.Enabled, kTrue);  // No: the game goes on
        whenModal([](QWidget* w) { qobject_cast<QMessageBox*>(w)->button(QMessageBox::Yes)->click(); });
        app.newGame();
        QCOMPARE(app.program().mod.GameOver, kTrue);
        QVERIFY(app.frmGorvane().cmdPlay->isVisible());
    }

    // A counter that overflows in a tick is a bug: the game stops with a message instead of
    // the exception escaping the timer's event (which ends the process at once).
    void failingRuleStopsTheGameWithAMessage() {
        QuillopApp::Options options = quiet();
        options.timer = true;
        QuillopApp app(options);
        app.Main();
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

    void scorePanelShowsTheTick() {
        QuillopApp app(quiet());
        app.Main();
        FrmScore& panel = app.frmScore();
        QCOMPARE(panel.Label1[0]->text(), QStringLiteral("Score:"));
        QCOMPARE(panel.Label1[2]->text(), QStringLiteral("Lives:"));
        QCOMPARE(panel.lblScore->palette().color(QPalette::WindowText), QColor(0, 255, 0));
        QCOMPARE(panel.lblLives->palette().color(QPalette::WindowText), QColor(255, 0, 0));
        QVERIFY(panel.lblLevel->font().bold() && !panel.Label1[1]->font().bold());
        QCOMPARE(panel.lblLevel->geometry().left(), 1 + 232);  // 3480 twips inside the border

        app.frmGorvane().cmdPlay->click();
        Gorvane& game = app.program().gorvane();
        app.program().mod.Score = 3250;
        game.Timer1_Timer();
        QCOMPARE(panel.lblScore->text(), QStringLiteral("3250"));
        QCOMPARE(panel.lblLevel->text(), QStringLiteral("1"));
        QCOMPARE(panel.lblLives->text(), QStringLiteral("2"));
        game.Lives = 1;
        game.Timer1_Timer();
        QCOMPARE(panel.lblLives->text(), QStringLiteral("0"));
    }

    void playfieldShowsSurfaceAndPuck() {
        QuillopApp app(quiet());
        app.Main();
        FrmGorvane& field = app.frmGorvane();
        Gorvane& game = app.program().gorvane();
        field.cmdPlay->click();
        ShapeModel& puck = game.shapePuck;
        puck.Left = 100;
        puck.Top = 50;
        field.refresh();
        QImage shown = field.canvas()->grab().toImage();
        QCOMPARE(shown.size(), app.surface().image().size());
        QCOMPARE(QColor(shown.pixel(104, 54)), QColor(Qt::white));         // solid white fill
        QCOMPARE(QColor(shown.pixel(100, 54)), QColor(0xC0, 0xC0, 0xC0));  // its border
        QCOMPARE(QColor(shown.pixel(100, 50)), QColor(app.surface().image().pixel(100, 50)));  // corner: the surface

        // The lost puck's look: a dark red rounded square; hidden, it leaves the surface.
        puck.Shape = kShapeRoundedSquare;
        puck.FillColor = kExplodedRed;
        field.refresh();
        shown = field.canvas()->grab().toImage();
        QCOMPARE(QColor(shown.pixel(104, 54)), QColor(0xC0, 0, 0));
        puck.Visible = kFalse;
        field.refresh();
        shown = field.canvas()->grab().toImage();
        QCOMPARE(shown.pixel(104, 54), app.surface().image().pixel(104, 54));

        // A picture painted by the game reaches the screen; the controls follow their models.
        app.surface().paintPicture(Pic::Pointspod, 10, 10);
        game.cmdDrop.Visible = kTrue;
        game.cmdDrop.Left = 30;
        field.refresh();
        shown = field.canvas()->grab().toImage();
        QCOMPARE(shown.copy(10, 10, 40, 40), app.surface().image().copy(10, 10, 40, 40));
        QVERIFY(app.surface().image().copy(10, 10, 40, 40) != QImage(40, 40, QImage::Format_RGB32));
        QVERIFY(field.cmdDrop->isVisible());
        QCOMPARE(field.cmdDrop->x(), 30);
        for (const QString& message : {QStringLiteral("Insert Coin"), QStringLiteral("You Win !!")})  // never cut off
            QVERIFY(QFontMetrics(field.Label7->font()).horizontalAdvance(message) < field.Label7->width());
    }

    // A pointer move leaves showing the paddle to the next tick; with no tick running it is
    // still on screen within one tick's time.
    void paddleShownWithinATickWithoutTicks() {
        QuillopApp app(quiet());  // no timer: no tick will come
        app.Main();
        QWidget* canvas = app.frmGorvane().canvas();
        QTRY_VERIFY(canvas->isVisible());
        QTest::qWait(50);
        QTest::mouseMove(canvas, QPoint(200, 250));
        const QRect paddle(184, 248, 32, 4);
        const QImage drawn = app.surface().image().copy(paddle);
        QVERIFY(drawn != QImage(drawn.size(), drawn.format()));  // painted at once, not black
        QTest::qWait(FrmGorvane::kShowSoonMs + 10);
        QCOMPARE(shownOnScreen(canvas).copy(paddle), drawn);
    }

    // At any scale (run again under QT_SCALE_FACTOR 1.5 and 2), what the window shows after
    // a few hundred partial repaints is what a full repaint of the same moment shows: no
    // edge of the puck or a sprite is left behind outside the repainted areas.
    void playedFieldMatchesAFreshRepaint() {
        QuillopApp app(quiet());
        app.Main();
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
};

// The program's own application object, which catches what a rule throws.
int main(int argc, char** argv) {
    GameApplication application(argc, argv);
    FrameTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "frame_test.moc"
