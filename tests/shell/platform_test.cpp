// The Qt services: the settings file against QSettings, the clock and the timer's pace, the
// sound call and the wave reader, the painting surface, the recorded games' folder.
#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QSettings>
#include <QTest>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "platform/qt/image_surface.h"
#include "platform/qt/picture_set.h"
#include "platform/qt/qt_sound.h"
#include "platform/qt/repaint_areas.h"
#include "platform/qt/tick_pacer.h"
#include "platform/qt/wave_file.h"
#include "shell/replay_shelf.h"
#include "shell_rig.h"

using namespace quillop;

namespace {

// LIST is a chunk the reader must step over (odd length: padded).
QByteArray wave(int rate, int channels, int bits, const QByteArray& pcm) {
    QByteArray out("RIFF\0\0\0\0WAVELIST\3\0\0\0abc\0fmt ", 28);
    QDataStream s(&out, QIODevice::Append);
    s.setByteOrder(QDataStream::LittleEndian);
    s << quint32(16) << quint16(1) << quint16(channels) << quint32(rate) << quint32(rate * channels * bits / 8)
      << quint16(channels * bits / 8) << quint16(bits);
    s.writeRawData("data", 4);
    s << quint32(pcm.size());
    return out + pcm;
}

void putFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

// Every value QSettings reads in the file now: from a copy under a name of its own (left in
// the test's home), as QSettings keeps what it read of a path and may miss that the file
// was replaced since.
QMap<QString, QString> readByQSettings(const QString& path) {
    static int copies = 0;
    QFile::copy(path, path + QString::number(++copies));
    QSettings settings(path + QString::number(copies), QSettings::IniFormat);
    QMap<QString, QString> values;
    for (const QString& key : settings.allKeys()) values[key] = settings.value(key).toString();
    return values;
}

}  // namespace

class PlatformTest : public QObject {
    Q_OBJECT
private slots:
    void init() { test::emptySettings(); }

    // Icons keep their transparency, bitmaps replace their rectangle, erasers paint black,
    // and a new back colour is handed to the window whole.
    void surfaceFollowsThePaintRules() {
        PictureSet pictures;
        ImageSurface surface(pictures, 100, 80);
        surface.setBackColor(0xFFFFFF);
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
        // The window is sent the whole field after a new back colour, then what was painted;
        // so many paints in one frame (an explosion's) are sent whole.
        const auto sent = [&surface] {
            const std::vector<QRect> areas = surface.takePaintedAreas();
            return QList<QRect>(areas.begin(), areas.end());
        };
        surface.setBackColor(0x000000);
        QCOMPARE(sent(), QList<QRect>{surface.image().rect()});
        surface.paintPicture(Pic::Arsemask, 10, 10);
        surface.paintPicture(Pic::Club, 90, 70);  // only its corner is on the field
        QCOMPARE(sent(), (QList<QRect>{QRect(10, 10, 32, 32), QRect(90, 70, 10, 10)}));
        for (int k = 0; k < 300; ++k) surface.paintPicture(Pic::Mask24x22, 60, 40);
        QCOMPARE(sent(), QList<QRect>{surface.image().rect()});
        QCOMPARE(sent(), QList<QRect>{});
    }

    // A repaint is sent as few rectangles as pay for themselves: areas join while joining
    // costs fewer pixels than the rectangle it saves, a grown area joining the next.
    void repaintJoinsAreasThatPay() {
        const std::vector<QRect> areas{{40, 0, 10, 10}, {0, 0, 10, 10}, {20, 0, 10, 10}, {200, 200, 5, 5}};
        QCOMPARE(coalesceRepaint(areas, 150), QRegion(0, 0, 50, 10) + QRect(200, 200, 5, 5));
        QCOMPARE(coalesceRepaint(areas, 100), QRegion(0, 0, 10, 10) + QRect(20, 0, 10, 10) + QRect(40, 0, 10, 10) +
                                                  QRect(200, 200, 5, 5));
        QCOMPARE(coalesceRepaint(areas, 1 << 20).rectCount(), 1);
    }

    // Our file reader and QSettings agree both ways: a file from the earlier version, which
    // QSettings wrote, reads the same, even as Qt 5 wrote text outside ASCII; a file we write
    // reads the same in QSettings, even after we read a damaged one (which values survive
    // damage is tested in tests/core).
    void settingsFileAgreesWithQSettings() {
        const QString path = QtSettingsStore().fileName();
        const QStringList names = {"He said \"hi\"; ok", "back\\slash, = sign", "  spaced  ", "two\nlines\tand\x01" "F",
                                   "@at", "Zoë 中文 😀", ""};
        for (const QString& name : names) {
            QSettings(path, QSettings::IniFormat).setValue(QStringLiteral("Gorvane/Highscorer"), name);
            QtSettingsStore store;
            QCOMPARE(QString::fromStdString(store.read("Gorvane", "Highscorer", "?")), name);
            store.write("Gorvane", "Highscorer", name.toStdString());
            QCOMPARE(store.commit(), std::string());
            QCOMPARE(readByQSettings(path).value(QStringLiteral("Gorvane/Highscorer")), name);
        }
        // Qt 5's escapes: UTF-16 units, two for a character past U+FFFF.
        putFile(path, "[Gorvane]\nHighscorer=Zo\\xeb \\xd83d\\xde00 \\x41\n");
        QCOMPARE(QString::fromStdString(QtSettingsStore().read("Gorvane", "Highscorer", "?")),
                 readByQSettings(path).value("Gorvane/Highscorer"));
        const QByteArray valid = "[Gorvane]\nTop=400\nHighscore=4321\nHighscorer=\"a \\\"b\\\"; c\"\n[Help]\nLeft=200\n"
                                 "[MDI]\nWidth=7000\nWindowstate=0\n";
        const char* const keys[][2] = {{"Gorvane", "Top"}, {"Gorvane", "Highscore"}, {"Gorvane", "Highscorer"},
                                       {"Help", "Left"}, {"MDI", "Width"}, {"MDI", "Windowstate"}, {"MDI", "Top"}};
        std::mt19937 rng(5);
        for (int tries = 0; tries < 300; ++tries) {
            QByteArray text = valid;
            for (int m = 1 + int(rng() % 4); m > 0; --m)
                text.insert(int(rng() % text.size()), "\"\\\n\r[=;@\xff\x01"[rng() % 10]);
            putFile(path, text);
            QtSettingsStore damaged;
            damaged.write("MDI", "Top", "300");
            QCOMPARE(damaged.commit(), std::string());
            const QMap<QString, QString> raw = readByQSettings(path);
            for (const auto& [section, key] : keys) {
                const std::string ours = damaged.read(section, key, "<none>");
                if (ours != "<none>") QCOMPARE(raw.value(QString(section) + '/' + key).toStdString(), ours);
            }
        }
    }

    // An interval of 1 ms runs 64 ticks a second; 600 ms is rounded up to whole clock steps;
    // a disabled timer or a tick still running holds the next, and no burst makes up for it.
    // A busy machine makes ticks late, never early or more.
    void pacerKeepsTheClassicPace() {
        TimerModel timer{kTrue, 1};
        bool busy = false;
        std::vector<qint64> at;  // when each tick ran
        QElapsedTimer elapsed;
        TickPacer pacer;
        pacer.timerModel = [&] { return timer; };
        pacer.busy = [&] { return busy; };
        pacer.onTick = [&] { at.push_back(elapsed.nsecsElapsed()); };
        const auto restart = [&] { at.clear(); elapsed.start(); pacer.start(); };
        QVERIFY(test::onSomeTry([&] {  // the rate between the first and the last tick: late events catch up
            restart();
            QTest::qWait(2000);
            const double rate = at.size() < 2 ? 0 : (at.size() - 1.0) / ((at.back() - at.front() + 1) / 1e9);
            qInfo("%zu ticks, %.2f a second", at.size(), rate);
            return std::abs(rate - 64) < 0.5;
        }));
        timer.Interval = 600;
        restart();
        QTRY_COMPARE(int(at.size()), 2);
        QVERIFY(at[0] >= 39 * TickPacer::kStepNs && at[1] >= 78 * TickPacer::kStepNs);  // 609 and 1219 ms: late, never early
        timer.Enabled = kFalse;
        QTest::qWait(200);
        busy = true;
        timer = {kTrue, 1};
        pacer.sync();
        QTest::qWait(200);
        QCOMPARE(int(at.size()), 2);  // disabled, then refused while a tick still runs
        busy = false;
        QTest::qWait(200);
        QVERIFY(at.size() <= 2 + 16);  // no burst for the refused time
        QTRY_VERIFY(at.size() > 2);
    }

    // The player's own sound files: mixed to mono, resampled to the server's rate, and
    // refused (costing only themselves) where no sound can be.
    void soundFilesMixResampleOrGiveWayToTheBuiltInOnes() {
        const auto builtIn = loadSound("drop.wav", 22050);
        QVERIFY(builtIn && builtIn->samples.size() > 100);
        QTemporaryDir dir;
        const QString cwd = QDir::currentPath();
        QDir::setCurrent(dir.path());
        QByteArray pcm;
        for (int k = 0; k < 4; ++k) pcm.append(char(0x80 + 64)).append(char(0x80 - 64 + k * 32));  // 8-bit stereo
        putFile("drop.wav", wave(11025, 2, 8, pcm));
        const std::vector<std::int16_t> up = loadSound("drop.wav", 22050)->samples;
        QCOMPARE(int(up.size()), 8);
        QCOMPARE(int(up[0]), 0);         // +64 and -64 mixed
        QCOMPARE(int(up[1]), 8 * 256);   // halfway to the next frame: +64 and -32 mixed
        QCOMPARE(int(up[4]), 32 * 256);  // +64 and 0
        // A file of the sound's name in the current directory comes first; one that is refused
        // (or too big to read) plays the built-in sound of that name instead.
        const QByteArray refused[] = {
            "RIFF....WAVEjunk", wave(7999, 1, 16, "1234"), wave(96001, 1, 16, "1234"), wave(22050, 3, 16, "123456"),
            wave(22050, 1, 24, "123456"), wave(22050, 0, 16, "1234"),
            wave(8000, 1, 8, QByteArray(80001, 1)),  // a frame over ten seconds
            wave(22050, 1, 16, "1234") + QByteArray(WaveLimits::kMaxFileBytes, 0),  // a good sound in a file too big to read
        };
        for (const QByteArray& file : refused) {
            putFile("drop.wav", file);
            QVERIFY2(loadSound("drop.wav", 22050)->samples == builtIn->samples, qPrintable(QString::number(&file - refused)));
        }
        QDir::setCurrent(cwd);
    }

    // The game's thread only hands a name over, even to a sound server that accepts the
    // connection and then never answers; and closing does not wait for that server either.
    // A hand-over never sleeps or blocks, however busy the machine: it makes no voluntary
    // context switch.
    void playingASoundNeverWaitsForTheSoundServer() {
        QTemporaryDir dir;
        const QByteArray path = dir.filePath(QStringLiteral("native")).toUtf8();
        const int hung = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{AF_UNIX, {}};
        std::strncpy(address.sun_path, path.constData(), sizeof(address.sun_path) - 1);
        QVERIFY(bind(hung, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 && listen(hung, 4) == 0);
        qputenv("PULSE_SERVER", "unix:" + path);
        // Waits this thread made (it slept or blocked), not counting the scheduler's own switches.
        const auto switches = [] { rusage usage{}; getrusage(RUSAGE_THREAD, &usage); return usage.ru_nvcsw; };
        std::vector<qint64> times;
        int waited = 0;
        auto player = std::make_unique<QtSoundPlayer>();
        player->playSound("begin.wav");  // before the sound thread: kept for it
        player->start();
        QElapsedTimer t;
        for (int k = 0; k < 200; ++k) {
            const long before = switches();
            t.start();
            player->playSound(k % 2 ? "drop.wav" : "nosuch.wav");
            times.push_back(t.nsecsElapsed());
            waited += switches() != before;
            if (k % 20 == 0) QTest::qWait(5);
        }
        pollfd knock{hung, POLLIN, 0};
        QVERIFY(poll(&knock, 1, 2000) == 1);  // the sound thread did call
        t.start();  // now the closing
        player.reset();
        qunsetenv("PULSE_SERVER");
        close(hung);
        std::sort(times.begin(), times.end());  // the median: a hand-over, not a call to the server
        QVERIFY2(waited == 0 && times[100] < 100'000 && t.elapsed() < 1000,
                 qPrintable(QString::asprintf("play: median %.3f ms, slowest %.3f ms, %d of 200 waited; closing %lld ms",
                                              times[100] / 1e6, times.back() / 1e6, waited, t.elapsed())));
    }

    // Recorded games: the one that set the current best score stays whatever follows it,
    // an older best becomes an ordinary game, and of those only the newest twenty stay.
    void replayShelfKeepsTheBestAndTheLastTwenty() {
        QTemporaryDir dir;
        ReplayShelf shelf(dir.path());
        const QDateTime start(QDate(2026, 1, 1), QTime(12, 0));
        for (int k = 0; k < 30; ++k)  // the first two set a best score each: 900, then 1000
            QVERIFY(shelf.keep("game\n", k < 2 ? 900 + 100 * k : k, k < 2, start.addSecs(k)));
        const QStringList kept = QDir(dir.path()).entryList({"*.scn"}, QDir::Files, QDir::Name);
        QCOMPARE(kept.size(), ReplayShelf::kKeptOthers + 1);
        QCOMPARE(kept.first(), QStringLiteral("2026-01-01_12-00-01_score-1000-best.scn"));
        QCOMPARE(kept.at(1), QStringLiteral("2026-01-01_12-00-10_score-10.scn"));
    }
};

QTEST_MAIN(PlatformTest)
#include "platform_test.moc"
