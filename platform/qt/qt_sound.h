// The one-voice sound call. Sounds are decoded once, then played by an audio sink that
// lives on its own thread and streams either the current sound or silence, so a play from
// the game is only a hand-over of a name: it never waits for the sound system, and a
// machine without one simply stays silent.
#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "game/world.h"

class QThread;

namespace quillop {

// Mono 16-bit samples at one rate.
struct Wave {
    int rate = 0;
    std::vector<std::int16_t> samples;
};

// Reads an uncompressed PCM RIFF wave (8 or 16 bits, any channel count) into mono 16-bit.
bool decodeWave(const QByteArray& bytes, Wave& out);
// The same sound at another rate (linear interpolation).
Wave resampled(const Wave& wave, int rate);
// Where a bare sound name is looked for: the current directory, then the built-in sounds.
QString locateSound(const std::string& fileName);

class AudioWorker;

class QtSoundPlayer : public SoundPlayer {
public:
    QtSoundPlayer();
    ~QtSoundPlayer() override;

    // Starts the sound thread; called once the window is up, since finding the sound
    // system can take a while. A sound asked for just before still plays.
    void start();
    void playSound(const std::string& fileName) override;
    // Whether a sink is streaming (false without a sound device).
    bool audible() const;

private:
    friend class AudioWorker;
    struct Request {
        std::string name;
        std::uint64_t serial = 0;
        qint64 askedMs = 0;
    };
    Request takeRequest();

    std::mutex mutex_;
    Request request_;
    std::uint64_t serial_ = 0;
    std::atomic<bool> audible_{false};
    QThread* thread_ = nullptr;
    AudioWorker* worker_ = nullptr;
};

}  // namespace quillop
