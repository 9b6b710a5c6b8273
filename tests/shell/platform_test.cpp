// The Qt services: the settings file, the timer's pace, the sound call and the wave reader.
#include <QDir>
#include <QElapsedTimer>
#include <QIcon>
#include <QGuiApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QTest>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "game/settings_values.h"
#include "platform/qt/image_surface.h"
#include "platform/qt/picture_set.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_sound.h"
#include "platform/qt/wave_file.h"
#include "platform/qt/tick_pacer.h"
#include "shell/desktop_identity.h"
#include "shell/replay_shelf.h"
#include "shell_rig.h"

using namespace quillop;

namespace {

QByteArray wave(int rate, int channels, int bits, const QByteArray& pcm) {
    QByteArray out("RIFF\0\0\0\0WAVE", 12);
    auto put32 = [&](quint32 v) { for (int k = 0; k < 4; ++k) out.append(char((v >> (8 * k)) & 0xFF)); };
    auto put16 = [&](quint16 v) { out.append(char(v & 0xFF)); out.append(char(v >> 8)); };
    out.append("LIST", 4);  // a chunk the reader must step over (odd length: padded)
    put32(3);
    out.append("abc\0", 4);
    out.append("fmt ", 4);
    put32(16);
    put16(1);
    put16(quint16(channels));
    put32(quint32(rate));
    put32(quint32(rate * channels * bits / 8));
    put16(quint16(channels * bits / 8));
    put16(quint16(bits));
    out.append("data", 4);
    put32(quint32(pcm.size()));
    out.append(pcm);
    return out;
}

}  // namespace

class PlatformTest : public QObject {
    Q_OBJECT
private slots:
    void init() { test::emptySettings(); }

    // Icons keep their transparency, bitmaps replace their rectangle, erasers paint black,
    // and every changed pixel lies in the region handed to the window.
    void surfaceFollowsThePaintRulesAndReportsEveryChange() {
        PictureSet pictures;
        ImageSurface surface(pictures, 100, 80);
        surface.setBackColor(0xFFFFFF);
        surface.takeDirtyRegion();
        surface.paintPicture(Pic::Club, 0, 0);  // 24 x 22 figure in a 32 x 32 icon
        QCOMPARE(surface.image().pixel(31, 31), qRgb(255, 255, 255));
        QVERIFY(surface.image().pixel(12, 10) != qRgb(255, 255, 255));
        surface.paintPicture(Pic::Arsemask, 0, 0);
        QCOMPARE(surface.image().pixel(12, 10), qRgb(0, 0, 0));
        QCOMPARE(surface.image().pixel(31, 31), qRgb(255, 255, 255));
        surface.paintPicture(Pic::Mask24x22, 50, 40);  // a bitmap: its whole rectangle
        QCOMPARE(surface.image().pixel(50, 40), qRgb(0, 0, 0));
        QCOMPARE(surface.image().pixel(73, 61), qRgb(0, 0, 0));
        QCOMPARE(surface.image().pixel(74, 61), qRgb(255, 255, 255));
        // A paint that overlaps an area already reported must still be reported whole.
        surface.paintPicture(Pic::Club, 20, 6);
        const QRegion dirty = surface.takeDirtyRegion();
        for (const QRect& painted : {QRect(0, 0, 32, 32), QRect(50, 40, 24, 22), QRect(20, 6, 32, 32)})
            QCOMPARE(dirty.intersected(painted), QRegion(painted));
        QVERIFY(surface.takeDirtyRegion().isEmpty());
        surface.setBackColor(0x000000);
        QCOMPARE(surface.image().pixel(12, 10), qRgb(0, 0, 0));
        QCOMPARE(surface.takeDirtyRegion(), QRegion(surface.image().rect()));
    }

    // Our file reader and QSettings agree both ways: a file from the earlier version, which
    // QSettings wrote, reads the same; a file we write reads the same in QSettings.
    void settingsFileAgreesWithQSettings() {
        const QStringList names = {QStringLiteral("He said \"hi\"; ok"), QStringLiteral("back\\slash, = sign"),
                                   QStringLiteral("  spaced  "), QStringLiteral("two\nlines\tand\x01" "F"),
                                   QStringLiteral("@at"), QStringLiteral("Zoë 中文 😀"), QString()};
        QtSettingsStore store;
        for (int k = 0; k < names.size(); ++k) {
            {
                QSettings old(store.fileName(), QSettings::IniFormat);
                old.setValue(QStringLiteral("Gorvane/Highscorer"), names[k]);
                old.setValue(QStringLiteral("Gorvane/Highscore"), QStringLiteral("12.5"));
            }
            QCOMPARE(QString::fromStdString(QtSettingsStore().read("Gorvane", "Highscorer", "?")), names[k]);
            store.write("Gorvane", "Highscorer", names[k].toStdString());
            store.write("MDI", "Width", "7000");
            QCOMPARE(store.commit(), std::string());
            QSettings raw(store.fileName(), QSettings::IniFormat);
            QCOMPARE(raw.value(QStringLiteral("Gorvane/Highscorer")), QVariant(names[k]));
            QCOMPARE(raw.value(QStringLiteral("MDI/Width")), QVariant(QStringLiteral("7000")));
            QCOMPARE(raw.value(QStringLiteral("Gorvane/Highscore")), QVariant(QStringLiteral("12.5")));
        }
        // As Qt 5 wrote text outside ASCII: UTF-16 units, two for a character past U+FFFF.
        QFile old(store.fileName());
        QVERIFY(old.open(QIODevice::WriteOnly | QIODevice::Truncate));
        old.write("[Gorvane]\nHighscorer=Zo\\xeb \\xd83d\\xde00 \\x41\n");
        old.close();
        QCOMPARE(QString::fromStdString(QtSettingsStore().read("Gorvane", "Highscorer", "?")),
                 QSettings(store.fileName(), QSettings::IniFormat).value("Gorvane/Highscorer").toString());
    }

    // The window class and the app id name the desktop entry that is installed; the
    // settings file stays where the players' best scores already are.
    void desktopIdentityNamesTheEntryAndKeepsTheSettings() {
        takeDesktopIdentity();
        const QString id = QGuiApplication::desktopFileName();
        QVERIFY(QFile::exists(QStringLiteral(QUILLOP_SOURCE_DIR "/resources/") + id + QStringLiteral(".desktop")));
        QCOMPARE(QCoreApplication::applicationName(), id);
        // The round icon every window shows, at the two sizes the desktop asks for.
        const QIcon icon = QGuiApplication::windowIcon();
        QCOMPARE(icon.availableSizes(), (QList<QSize>{{32, 32}, {16, 16}}));
        const QImage icon32 = icon.pixmap(32, 32).toImage();
        QVERIFY(qAlpha(icon32.pixel(0, 0)) == 0 && qAlpha(icon32.pixel(16, 16)) == 255);
        QVERIFY(QtSettingsStore().fileName().endsWith(QStringLiteral("/.config/Quillop/Quillop.conf")));
    }

    // Whatever damaged text the file holds (which values survive is tested in tests/core),
    // the file written afterwards is one that QSettings reads in full: every value we read,
    // it reads the same.
    void damagedSettingsStillSaveAFileQSettingsReads() {
        QtSettingsStore store;
        QDir().mkpath(QFileInfo(store.fileName()).path());
        auto put = [&](const QByteArray& text) {
            QFile file(store.fileName());
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(text);
        };
        // Random damage, then a save: QSettings must read every value we read.
        const QByteArray valid = "[Gorvane]\nTop=400\nHighscore=4321\nHighscorer=\"a \\\"b\\\"; c\"\n[Help]\nLeft=200\n"
                                 "[MDI]\nWidth=7000\nWindowstate=0\n";
        const QStringList keys = {"Gorvane/Top", "Gorvane/Highscore", "Gorvane/Highscorer", "Help/Left",
                                  "MDI/Width", "MDI/Windowstate", "MDI/Top"};
        std::mt19937 rng(5);
        for (int tries = 0; tries < 300; ++tries) {
            QByteArray text = valid;
            for (int m = 1 + int(rng() % 4); m > 0; --m)
                text.insert(int(rng() % text.size()), "\"\\\n\r[=;@\xff\x01"[rng() % 10]);
            put(text);
            QtSettingsStore damaged;
            damaged.write("MDI", "Top", "300");
            QCOMPARE(damaged.commit(), std::string());
            QSettings raw(store.fileName(), QSettings::IniFormat);
            for (const QString& key : keys) {
                const std::string ours = damaged.read(key.section('/', 0, 0).toStdString(),
                                                      key.section('/', 1).toStdString(), "<none>");
                if (ours != "<none>") QCOMPARE(raw.value(key).toString().toStdString(), ours);
            }
        }
    }

    void clockStepsSixtyFourTimesASecond() {
        QtClock clock;
        for (int k = 0; k < 50; ++k) {
            const double t = clock.secondsSinceMidnight();
            QCOMPARE(t * 64, std::floor(t * 64));
            QVERIFY(t >= 0 && t < 86400);
        }
    }

    // A wait for the clock's next step sleeps instead of spinning, yet still runs the
    // window's events and ends on the step.
    void pumpWaitsForTheClockWithoutSpinning() {
        QtClock clock;
        QtEventPump pump;
        int hooks = 0;
        pump.beforeEach = [&hooks] { ++hooks; };
        bool timerRan = false;
        QTimer::singleShot(20, [&] { timerRan = true; });
        QElapsedTimer elapsed;
        elapsed.start();
        const double start = clock.secondsSinceMidnight();
        while (clock.secondsSinceMidnight() < start + 6.0 / 64 && elapsed.elapsed() < 2000) pump.processPendingEvents();
        QVERIFY(timerRan);
        QVERIFY2(elapsed.elapsed() >= 75 && elapsed.elapsed() < 140, qPrintable(QString::number(elapsed.elapsed())));
        QVERIFY2(hooks <= 30, qPrintable(QString::number(hooks)));  // spinning made thousands
    }

    // The direct XPM reader gives what Qt's image reader gives, for every picture shipped,
    // and turns down a file cut short.
    void xpmReaderMatchesQtsReader() {
        QStringList paths = {QStringLiteral(":/icons/quillop_32.xpm"), QStringLiteral(":/about.xpm")};
        for (int k = 1; k < kPictureCount; ++k)
            paths << QStringLiteral(":/sprites/%1.xpm").arg(QString::fromLatin1(pictureName(static_cast<Pic>(k))));
        for (const QString& path : paths) {
            const QImage expected(path);
            QVERIFY2(!expected.isNull(), qPrintable(path));
            QCOMPARE(readXpm(path).convertToFormat(QImage::Format_ARGB32),
                     expected.convertToFormat(QImage::Format_ARGB32));
        }
        QFile whole(QStringLiteral(":/icons/quillop_16.xpm"));
        QVERIFY(whole.open(QIODevice::ReadOnly));
        QTemporaryDir dir;
        QFile cut(dir.filePath(QStringLiteral("cut.xpm")));
        QVERIFY(cut.open(QIODevice::WriteOnly));
        cut.write(whole.readAll().left(300));
        cut.close();
        QVERIFY(readXpm(cut.fileName()).isNull());
        QVERIFY(readXpm(dir.filePath(QStringLiteral("missing.xpm"))).isNull());
    }

    void pacerRunsAtSixtyFourTicksASecond() {
        TimerModel timer{kTrue, 1};
        int ticks = 0;
        TickPacer pacer;
        pacer.timerModel = [&] { return timer; };
        pacer.busy = [] { return false; };
        pacer.onTick = [&] { ++ticks; };
        pacer.start();
        QElapsedTimer elapsed;
        elapsed.start();
        QTest::qWait(2000);
        const double seconds = elapsed.nsecsElapsed() / 1e9;
        qInfo("%d ticks in %.3f s", ticks, seconds);
        QVERIFY2(std::abs(ticks - seconds * 64) <= 3, qPrintable(QString::number(ticks)));
    }

    void pacerKeepsDesignIntervalAndStopsWhenDisabledOrBusy() {
        QCOMPARE(TickPacer::periodNs(600), 39 * TickPacer::kStepNs);  // rounded up to the clock's steps
        QCOMPARE(TickPacer::periodNs(1), TickPacer::kStepNs);
        TimerModel timer{kTrue, 600};
        bool busy = false;
        int ticks = 0;
        TickPacer pacer;
        pacer.timerModel = [&] { return timer; };
        pacer.busy = [&] { return busy; };
        pacer.onTick = [&] { ++ticks; };
        pacer.start();
        QTest::qWait(1300);
        QCOMPARE(ticks, 2);  // at 609 and 1219 ms
        timer.Enabled = kFalse;
        QTest::qWait(200);
        const int stopped = ticks;
        busy = true;
        timer.Enabled = kTrue;
        timer.Interval = 1;
        pacer.sync();
        QTest::qWait(200);
        QCOMPARE(ticks, stopped);  // disabled, then refused while a tick still runs
        busy = false;
        QTest::qWait(200);
        QVERIFY(ticks > stopped && ticks <= stopped + 16);  // no burst for the refused time
    }

    void waveReaderMixesResamplesAndRefusesWhatNoSoundCanBe() {
        QByteArray pcm;
        for (int k = 0; k < 4; ++k) pcm.append(char(0x80 + 64)).append(char(0x80 - 64 + k * 32));  // 8-bit stereo
        Wave w;
        QVERIFY(decodeWave(wave(11025, 2, 8, pcm), w));
        QCOMPARE(w.rate, 11025);
        QCOMPARE(int(w.samples.size()), 4);
        QCOMPARE(int(w.samples[0]), 0);         // +64 and -64 mixed
        QCOMPARE(int(w.samples[2]), 32 * 256);  // +64 and 0
        const Wave up = resampled(w, 22050);
        QCOMPARE(int(up.samples.size()), 8);
        QCOMPARE(int(up.samples[1]), 8 * 256);  // halfway between 0 and 16 * 256
        QVERIFY(!decodeWave(QByteArray("RIFF....WAVEjunk"), w));
        // The edges of what is taken: 8,000 to 96,000 Hz, 1 or 2 channels, 8 or 16 bits, 10 s.
        QVERIFY(decodeWave(wave(8000, 1, 8, QByteArray(80000, '\x80')), w));
        QVERIFY(decodeWave(wave(96000, 2, 16, QByteArray(8, '\0')), w));
        const struct { int rate, channels, bits, bytes; } refused[] = {
            {1, 1, 16, 1 << 20},  // one hertz: resampling it would ask for gigabytes
            {7999, 1, 16, 4}, {96001, 1, 16, 4}, {22050, 3, 16, 6}, {22050, 1, 24, 6}, {22050, 0, 16, 4},
            {8000, 1, 8, 80001},  // a frame over ten seconds
        };
        for (const auto& r : refused)
            QVERIFY2(!decodeWave(wave(r.rate, r.channels, r.bits, QByteArray(r.bytes, '\0')), w),
                     qPrintable(QStringLiteral("%1 Hz %2 ch %3 bit").arg(r.rate).arg(r.channels).arg(r.bits)));
    }

    // A file of the sound's name in the current directory comes first; one that is refused
    // (or too big to read) plays the built-in sound of that name instead.
    void soundsComeFromTheCurrentDirectoryOrTheBuiltInOnes() {
        const auto builtIn = loadSound("drop.wav", 22050);
        QVERIFY(builtIn && builtIn->samples.size() > 100);
        QVERIFY(!loadSound("nosuch.wav", 22050));
        QVERIFY(!loadSound("../drop.wav", 22050));
        auto put = [](const char* name, const QByteArray& bytes) {
            QFile f(QDir::current().filePath(QString::fromLatin1(name)));
            QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(bytes);
        };
        put("drop.wav", wave(22050, 1, 16, QByteArray(4, '\0')));
        QCOMPARE(int(loadSound("drop.wav", 22050)->samples.size()), 2);
        put("drop.wav", wave(1, 1, 16, QByteArray(1 << 20, '\x11')));
        QVERIFY(loadSound("drop.wav", 22050)->samples == builtIn->samples);
        put("begin.wav", wave(22050, 1, 16, QByteArray(int(WaveLimits::kMaxFileBytes), '\0')));
        QVERIFY(loadSound("begin.wav", 22050)->samples == loadWaveFile(QStringLiteral(":/sounds/begin.wav"), 22050)->samples);
        QFile::remove(QDir::current().filePath(QStringLiteral("drop.wav")));
        QFile::remove(QDir::current().filePath(QStringLiteral("begin.wav")));
    }

    // The game's thread only hands a name over, even to a sound server that accepts the
    // connection and then never answers; and closing does not wait for that server either.
    void playingASoundNeverWaitsForTheSoundServer() {
        QTemporaryDir dir;
        const QByteArray path = dir.filePath(QStringLiteral("native")).toUtf8();
        const int hung = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.constData(), sizeof(address.sun_path) - 1);
        QVERIFY(bind(hung, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 && listen(hung, 4) == 0);
        qputenv("PULSE_SERVER", "unix:" + path);
        std::vector<qint64> times;
        QElapsedTimer closing;
        {
            QtSoundPlayer player;
            player.playSound("begin.wav");  // before the sound thread: kept for it
            player.start();
            QElapsedTimer t;
            for (int k = 0; k < 200; ++k) {
                t.start();
                player.playSound(k % 2 ? "drop.wav" : "nosuch.wav");
                times.push_back(t.nsecsElapsed());
                if (k % 20 == 0) QTest::qWait(5);
            }
            pollfd knock{hung, POLLIN, 0};
            QVERIFY(poll(&knock, 1, 2000) == 1);  // the sound thread did call
            QVERIFY(!player.audible());
            closing.start();
        }
        qunsetenv("PULSE_SERVER");
        close(hung);
        std::sort(times.begin(), times.end());
        qInfo("play: median %.3f ms, slowest %.3f ms; closing %lld ms", times[100] / 1e6, times.back() / 1e6,
              closing.elapsed());
        QVERIFY(times[100] < 100'000);     // a hand-over, not a call to the server
        QVERIFY(times.back() < 10'000'000);  // the slowest: room for a busy machine's scheduler
        QVERIFY(closing.elapsed() < 1000);
    }

    // Recorded games: the one that set the current best score stays whatever follows it,
    // an older best becomes an ordinary game, and of those only the newest twenty stay.
    void replayShelfKeepsTheBestAndTheLastTwenty() {
        QTemporaryDir dir;
        ReplayShelf shelf(dir.path());
        const QDateTime start(QDate(2026, 1, 1), QTime(12, 0));
        QVERIFY(shelf.keep("first best\n", 900, true, start));
        QVERIFY(shelf.keep("second best\n", 1000, true, start.addSecs(1)));
        for (int k = 2; k < 30; ++k) QVERIFY(shelf.keep("game\n", k, false, start.addSecs(k)));
        const QStringList kept = QDir(dir.path()).entryList({"*.scn"}, QDir::Files, QDir::Name);
        QCOMPARE(kept.size(), ReplayShelf::kKeptOthers + 1);
        QCOMPARE(kept.first(), QStringLiteral("2026-01-01_12-00-01_score-1000-best.scn"));
        QCOMPARE(kept.at(1), QStringLiteral("2026-01-01_12-00-10_score-10.scn"));
        QFile best(dir.filePath(kept.first()));
        QVERIFY(best.open(QIODevice::ReadOnly));
        QCOMPARE(best.readAll(), QByteArray("second best\n"));
    }
};

QTEST_MAIN(PlatformTest)
#include "platform_test.moc"
