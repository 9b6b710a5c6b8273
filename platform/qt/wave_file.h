// The game's sounds as samples: reading a wave file, refusing what no event sound can be,
// and finding a sound by its bare name.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillop {

// Mono 16-bit samples at one rate.
struct Wave {
    int rate = 0;
    std::vector<std::int16_t> samples;
};

// What a wave file may hold. Anything else is refused before a sample is read: a stray
// file in the current directory must cost neither memory nor a noise.
struct WaveLimits {
    static constexpr int kMinRate = 8000;
    static constexpr int kMaxRate = 96000;
    static constexpr int kMaxChannels = 2;
    static constexpr int kMaxSeconds = 10;
    // The largest file that can hold such a sound, with room for a few extra chunks.
    static constexpr qint64 kMaxFileBytes = qint64(kMaxRate) * kMaxChannels * 2 * kMaxSeconds + 65536;
};

// A RIFF wave's format and where its samples are, as the file states them; zeros (and no
// samples) where the file is not a wave or lacks the chunk.
struct WaveLayout {
    int format = 0, channels = 0, rate = 0, bits = 0;  // format 1: uncompressed PCM
    const char* pcm = nullptr;                          // into the bytes read
    qsizetype pcmBytes = 0;
};
WaveLayout readWaveLayout(const QByteArray& bytes);

// Reads an uncompressed PCM RIFF wave (1 or 2 channels, 8 or 16 bits, within WaveLimits)
// into mono 16-bit; false for anything else.
bool decodeWave(const QByteArray& bytes, Wave& out);
// The same sound at another rate (linear interpolation).
Wave resampled(const Wave& wave, int rate);
// The sound a bare name stands for, at the given rate: the file of that name in the current
// directory, or, when there is none or it is refused, the built-in sound of that name. Null
// when neither exists (the caller plays its default sound then).
std::shared_ptr<const Wave> loadSound(const std::string& fileName, int rate);
// A wave file read from a path (file system or resource); null when refused.
std::shared_ptr<const Wave> loadWaveFile(const QString& path, int rate);

}  // namespace quillop
