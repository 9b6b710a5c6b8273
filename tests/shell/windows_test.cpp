// The windows: the frame's placement and icon, what the playfield shows, the high-score
// entry, the help window, the texts in their boxes and a rule's failure. Which rule a window follows
// is tested headless (tests/core); what the window manager and the pointer do, end to end
// (tests/e2e). Here, what only the widgets show.
#include <QBackingStore>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>

#include "game/settings_values.h"
#include "shell/classic.h"
#include "shell/desktop_identity.h"
#include "shell/frm_help.h"
#include "shell/game_application.h"
#include "shell/on_screen.h"
#include "shell/version.h"
#include "shell_rig.h"

using namespace quillop;
using namespace quillop::test;

namespace {
// What the window shows of a widget: its part of the window's backing store (an image on the
// offscreen platform), in device pixels.
QImage shownOnScreen(QWidget* widget) {
    const qreal ratio = widget->devicePixelRatioF();
    const QRect box(QPointF(widget->mapTo(widget->window(), QPoint(0, 0)) * ratio).toPoint(),
                    QSizeF(QSizeF(widget->size()) * ratio).toSize());
    const auto* store = static_cast<const QImage*>(widget->window()->backingStore()->paintDevice());
    return store->copy(box).convertToFormat(QImage::Format_RGB32);
}

// Every label's and button's text inside its box: as wide as its advance, as high as its ink
// (the classic boxes are tight: a 12-point line is taller than some of them, its digits not).
void textsSitInTheirBoxes(QWidget* window) {
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
        QVERIFY2(needed.width() <= w->width() && needed.height() <= w->height() &&
                     line + metrics.ascent() + ink.top() >= 0 && window->rect().contains(w->geometry()),
                 qPrintable(text));
    }
}
}  // namespace

class WindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { emptySettings(); }

    // A placement remembered from a desktop that has changed since: a screen gone, a title
    // bar out of reach, too little showing, a size bigger than the screen. The frame shows
    // the round icon, at the two sizes the desktop asks for, and names its desktop entry
    // (where Wayland finds the icon).
    void frameIsPlacedOnTodaysScreensAndShowsTheIcon() {
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
        // As wide as the screen, so moved in to fit; as high as it was, at the default place.
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QTRY_COMPARE(QRectF(app.frmMDI().left(), app.frmMDI().top(), app.frmMDI().width(), app.frmMDI().height()),
                     QRectF(twips(screen.left()), twips(screen.top() + 20), twips(screen.width()), 6000));
        QCOMPARE(app.frmMDI().windowIcon().availableSizes(), (QList<QSize>{{32, 32}, {16, 16}}));
        const QImage icon32 = app.frmMDI().windowIcon().pixmap(32, 32).toImage();
        QVERIFY(qAlpha(icon32.pixel(0, 0)) == 0 && qAlpha(icon32.pixel(16, 16)) == 255);  // round
        QCOMPARE(QGuiApplication::desktopFileName(), QLatin1String(kAppId));
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
        // The drawing area is the playfield's inside, and the surface matches it.
        QCOMPARE(app.surface().image().size(), QSize(int(field.scaleWidth()), int(field.scaleHeight())));
        field.cmdPlay->click();
        game.Lives = 100;  // no game over and no dialog
        for (int tick = 0; tick < 600; ++tick) {
            if (game.cmdDrop.Visible == kTrue) field.cmdDrop->click();
            app.runTick();
            QCoreApplication::processEvents();
        }
        QTest::qWait(50);
        const QImage shown = shownOnScreen(canvas);
        canvas->repaint();
        QCOMPARE(shown, shownOnScreen(canvas));
    }

    // The dialogs, also run at 1.5x and 2x. Every window's texts inside their boxes, captions
    // apart from their values, the playfield's messages fitting their label. The about box is
    // single, shows the version and the licence, and is unloaded by OK.
    // Congrats!: stored as typed is the rules', Enter and OK clicked end to end; here the
    // focus, the score shown, and the name taken by Tab and Space. The pause lets the moved
    // focus repaint, which must not pull the focus back.
    // Help: which figure a press counts on is the rules' (in twips), the help's place is
    // stored end to end; here, where it opens, the pixels its presses land on, and its tips
    // inside their box.
    void dialogsKeepTheirTextsInTheirBoxesAndAnswer() {
        QuietApp app;
        FrmScore& panel = app.frmScore();
        app.openAbout();
        QPointer<FrmAbout> about = app.frmAbout();
        for (QWidget* window : std::initializer_list<QWidget*>{&panel, &app.frmHighscore(), about})
            textsSitInTheirBoxes(window);
        const std::pair<QLabel*, QLabel*> pairs[] = {
            {panel.Label1[0], panel.lblScore}, {panel.Label1[1], panel.lblLevel}, {panel.Label1[2], panel.lblLives}};
        for (const auto& [caption, value] : pairs)
            QVERIFY2(caption->x() + caption->fontMetrics().horizontalAdvance(caption->text()) + 4 <= value->x(),
                     qPrintable(caption->text()));
        const QLabel* messages = app.frmGorvane().Label7;
        const QFontMetrics metrics = messages->fontMetrics();  // the label is aligned to its top
        for (const QString& text : {QStringLiteral("Insert Coin"), QStringLiteral("You Win !!")})
            QVERIFY(metrics.horizontalAdvance(text) < messages->width() &&
                    metrics.ascent() + metrics.boundingRect(text).bottom() < messages->height());
        app.openAbout();
        QCOMPARE(app.frmAbout(), about.data());
        // The one version, and the licence the package declares.
        QCOMPARE(about->lblVersion->text(), QStringLiteral("Version ") + QLatin1String(kVersion));
        QVERIFY(about->lblDisclaimer->text().contains(QStringLiteral("GPL, version 3 or later")));
        about->cmdOK->click();
        QTRY_VERIFY(about.isNull());
        app.program().mod.Score = 5000;
        whenModal([&](QWidget* w) {
            auto* dialog = static_cast<FrmHighscore*>(w);
            QTRY_VERIFY(dialog->txtHighscorer->hasFocus());  // moved there by the paint
            QCOMPARE(dialog->windowTitle() + "|" + dialog->lblHighscore->text(), QStringLiteral("Congrats!|5000"));
            QTest::keyClicks(dialog->txtHighscorer, QStringLiteral("Bo b"));
            QTest::keyClick(dialog->txtHighscorer, Qt::Key_Tab);
            QTest::qWait(60);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        });
        app.showHighscoreDialog();
        QCOMPARE(QtSettingsStore().read("Gorvane", "Highscorer", ""), std::string("Bo b"));
        QTRY_VERIFY(app.frmMDI().width() >= 6000.0f);  // framed (as wide as a small screen lets it): no resize to come
        QPoint place;
        whenModal([&](QWidget* w) {
            auto* help = static_cast<FrmHelp*>(w);
            place = help->pos();
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
            textsSitInTheirBoxes(help);
            help->cmdTips->click();
            QVERIFY(help->txtHelp->toPlainText().endsWith(QStringLiteral("level 9 to win the game.")));
            QTest::qWait(20);
            QCOMPARE(help->txtHelp->verticalScrollBar()->maximum(), 0);  // the tips fit the box
            QTest::keyClick(help, Qt::Key_Escape);  // no cancel button: still open
            QVERIFY(help->isVisible());
            help->cmdClose->click();
        });
        app.openHelp();
        QCOMPARE(place, QPoint(13, 27));  // Left 200, Top 400 twips
    }

    // A counter that overflows in a tick is a bug: the game stops with a message instead of
    // the exception escaping the timer's event (which ends the process at once). Last, as
    // the program then ends its event loops.
    void failingRuleStopsTheGameWithAMessage() {
        QuietApp app(true);  // ticking
        app.frmGorvane().cmdPlay->click();
        app.program().gorvane().SeekerTimer = 32767;  // the next tick counts past an Integer
        QString box;
        whenModal([&](QWidget* w) {
            box = w->objectName();
            QVERIFY(qobject_cast<QMessageBox*>(w)->text().contains(QStringLiteral("Integer overflow")));
            qobject_cast<QMessageBox*>(w)->button(QMessageBox::Ok)->click();
        });
        QTRY_COMPARE(box, QStringLiteral("ruleFailedBox"));
        const std::uint64_t ticks = app.ticksRun();
        QTest::qWait(100);
        QCOMPARE(app.ticksRun(), ticks);  // no tick runs after it
    }
};

// The program's own application object, which catches what a rule throws, and its
// identity on the desktop.
int main(int argc, char** argv) {
    GameApplication application(argc, argv);
    takeDesktopIdentity();
    WindowsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "windows_test.moc"
