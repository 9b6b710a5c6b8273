#include "platform/qt/wave_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstring>

#include "resources/assets.h"

namespace quillop {
namespace {

std::uint32_t le32(const char* p) {
    const auto* u = reinterpret_cast<const unsigned char*>(p);
    return u[0] | (u[1] << 8) | (u[2] << 16) | (static_cast<std::uint32_t>(u[3]) << 24);
}
std::uint16_t le16(const char* p) {
    const auto* u = reinterpret_cast<const unsigned char*>(p);
    return static_cast<std::uint16_t>(u[0] | (u[1] << 8));
}

}  // namespace

WaveLayout readWaveLayout(const QByteArray& bytes) {
    const char* data = bytes.constData();
    const qsizetype size = bytes.size();
    WaveLayout layout;
    if (size < 12 || std::memcmp(data, "RIFF", 4) != 0 || std::memcmp(data + 8, "WAVE", 4) != 0) return layout;
    for (qsizetype at = 12; at + 8 <= size;) {
        const qsizetype length = le32(data + at + 4);
        const char* body = data + at + 8;
        const qsizetype available = std::min<qsizetype>(length, size - at - 8);
        if (std::memcmp(data + at, "fmt ", 4) == 0 && available >= 16) {
            layout.format = le16(body);
            layout.channels = le16(body + 2);
            layout.rate = static_cast<int>(std::min<std::uint32_t>(le32(body + 4), 1u << 30));
            layout.bits = le16(body + 14);
            // WAVE_FORMAT_EXTENSIBLE: the sub-format's first two bytes name the coding.
            if (layout.format == 0xFFFE && available >= 26) layout.format = le16(body + 24);
        } else if (std::memcmp(data + at, "data", 4) == 0) {
            layout.pcm = body;
            layout.pcmBytes = available;
        }
        at += 8 + length + (length & 1);  // chunks are padded to even sizes
    }
    return layout;
}

namespace {

bool withinLimits(const WaveLayout& w) {
    if (w.format != 1 || !w.pcm) return false;
    if (w.channels < 1 || w.channels > WaveLimits::kMaxChannels) return false;
    if (w.bits != 8 && w.bits != 16) return false;
    if (w.rate < WaveLimits::kMinRate || w.rate > WaveLimits::kMaxRate) return false;
    const qsizetype frames = w.pcmBytes / (w.channels * w.bits / 8);
    return frames <= qsizetype(w.rate) * WaveLimits::kMaxSeconds;
}

}  // namespace

bool decodeWave(const QByteArray& bytes, Wave& out) {
    const WaveLayout w = readWaveLayout(bytes);
    if (!withinLimits(w)) return false;
    const int frameBytes = w.channels * w.bits / 8;
    const qsizetype frames = w.pcmBytes / frameBytes;
    out.rate = w.rate;
    out.samples.resize(static_cast<std::size_t>(frames));
    for (qsizetype f = 0; f < frames; ++f) {
        int sum = 0;
        for (int c = 0; c < w.channels; ++c) {
            const char* s = w.pcm + f * frameBytes + c * (w.bits / 8);
            sum += w.bits == 16 ? static_cast<std::int16_t>(le16(s)) : (static_cast<unsigned char>(*s) - 128) * 256;
        }
        out.samples[static_cast<std::size_t>(f)] = static_cast<std::int16_t>(sum / w.channels);
    }
    return true;
}

Wave resampled(const Wave& wave, int rate) {
    if (wave.rate == rate || wave.samples.empty() || rate <= 0) return wave;
    Wave out;
    out.rate = rate;
    const double step = static_cast<double>(wave.rate) / rate;
    const auto count = static_cast<std::size_t>(wave.samples.size() / step);
    out.samples.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
        const double pos = k * step;
        const auto i = static_cast<std::size_t>(pos);
        const double frac = pos - i;
        const int a = wave.samples[i];
        const int b = i + 1 < wave.samples.size() ? wave.samples[i + 1] : a;
        out.samples[k] = static_cast<std::int16_t>(a + (b - a) * frac);
    }
    return out;
}

std::shared_ptr<const Wave> loadWaveFile(const QString& path, int rate) {
    QFile file(path);
    // The size is checked before reading, so a huge file is never read into memory.
    if (file.size() > WaveLimits::kMaxFileBytes || !file.open(QIODevice::ReadOnly)) return nullptr;
    Wave decoded;
    if (!decodeWave(file.read(WaveLimits::kMaxFileBytes), decoded)) return nullptr;
    return std::make_shared<const Wave>(resampled(decoded, rate));
}

std::shared_ptr<const Wave> loadSound(const std::string& fileName, int rate) {
    const QString name = QString::fromStdString(fileName);
    // A bare name only, as the classic call took it: the current directory comes first.
    if (name.isEmpty() || name.contains(QLatin1Char('/'))) return nullptr;
    const QString local = QDir::current().filePath(name);
    if (QFileInfo(local).isFile())
        if (auto wave = loadWaveFile(local, rate)) return wave;
    const QString builtIn = assets::soundPath(name);
    return QFile::exists(builtIn) ? loadWaveFile(builtIn, rate) : nullptr;
}

}  // namespace quillop
