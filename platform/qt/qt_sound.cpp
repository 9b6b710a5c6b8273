#include "platform/qt/qt_sound.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QMediaDevices>
#include <QThread>
#include <algorithm>
#include <cstring>
#include <map>

#include "resources/assets.h"

namespace quillop {
namespace {

constexpr int kDefaultRate = 22050;
// A sound asked for before the thread was ready still plays if it is this fresh.
constexpr qint64 kStartGraceMs = 2000;

const char* const kKnownSounds[] = {
    "begin.wav",     "drop.wav",      "sidebounce.wav", "bottombounce.wav", "paddlebounce.wav",
    "catfish.wav",   "energypod.wav", "pointspod.wav",  "sidestopper.wav",  "seeker3.wav",
    "blowup.wav",    "arsedeath.wav", "gameover.wav",   "goodjob.wav",
};

std::uint32_t le32(const char* p) {
    const auto* u = reinterpret_cast<const unsigned char*>(p);
    return u[0] | (u[1] << 8) | (u[2] << 16) | (static_cast<std::uint32_t>(u[3]) << 24);
}
std::uint16_t le16(const char* p) {
    const auto* u = reinterpret_cast<const unsigned char*>(p);
    return static_cast<std::uint16_t>(u[0] | (u[1] << 8));
}

}  // namespace

bool decodeWave(const QByteArray& bytes, Wave& out) {
    const char* data = bytes.constData();
    const qsizetype size = bytes.size();
    if (size < 12 || std::memcmp(data, "RIFF", 4) != 0 || std::memcmp(data + 8, "WAVE", 4) != 0) return false;
    int format = 0, channels = 0, rate = 0, bits = 0;
    const char* pcm = nullptr;
    qsizetype pcmBytes = 0;
    for (qsizetype at = 12; at + 8 <= size;) {
        const qsizetype length = le32(data + at + 4);
        const char* body = data + at + 8;
        const qsizetype available = std::min<qsizetype>(length, size - at - 8);
        if (std::memcmp(data + at, "fmt ", 4) == 0 && available >= 16) {
            format = le16(body);
            channels = le16(body + 2);
            rate = static_cast<int>(le32(body + 4));
            bits = le16(body + 14);
            // WAVE_FORMAT_EXTENSIBLE: the sub-format's first two bytes name the coding.
            if (format == 0xFFFE && available >= 26) format = le16(body + 24);
        } else if (std::memcmp(data + at, "data", 4) == 0) {
            pcm = body;
            pcmBytes = available;
        }
        at += 8 + length + (length & 1);  // chunks are padded to even sizes
    }
    if (format != 1 || channels < 1 || rate <= 0 || (bits != 8 && bits != 16) || !pcm) return false;
    const int frameBytes = channels * bits / 8;
    const qsizetype frames = pcmBytes / frameBytes;
    out.rate = rate;
    out.samples.resize(static_cast<std::size_t>(frames));
    for (qsizetype f = 0; f < frames; ++f) {
        int sum = 0;
        for (int c = 0; c < channels; ++c) {
            const char* s = pcm + f * frameBytes + c * (bits / 8);
            sum += bits == 16 ? static_cast<std::int16_t>(le16(s))
                              : (static_cast<unsigned char>(*s) - 128) * 256;
        }
        out.samples[static_cast<std::size_t>(f)] = static_cast<std::int16_t>(sum / channels);
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

QString locateSound(const std::string& fileName) {
    const QString name = QString::fromStdString(fileName);
    // A bare name, as the classic call took it: the working directory comes first.
    if (!name.isEmpty() && QFileInfo(QDir::current().filePath(name)).isFile())
        return QDir::current().filePath(name);
    const QString builtIn = assets::soundPath(name);
    if (!name.isEmpty() && !name.contains(QLatin1Char('/')) && QFile::exists(builtIn)) return builtIn;
    return QString();
}

// Streams the current sound, then silence, for as long as the sink pulls.
class SoundStream : public QIODevice {
public:
    void play(std::shared_ptr<const Wave> wave) {
        current_ = std::move(wave);
        position_ = 0;
    }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return (1 << 20) + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 maxSize) override {
        auto* out = reinterpret_cast<std::int16_t*>(data);
        const qint64 wanted = maxSize / 2;
        qint64 written = 0;
        if (current_) {
            const auto left = static_cast<qint64>(current_->samples.size()) - position_;
            const qint64 n = std::min(left, wanted);
            if (n > 0) std::memcpy(out, current_->samples.data() + position_, static_cast<std::size_t>(n) * 2);
            position_ += n;
            written = n;
            if (position_ >= static_cast<qint64>(current_->samples.size())) current_.reset();
        }
        std::fill(out + written, out + wanted, std::int16_t{0});
        return wanted * 2;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    std::shared_ptr<const Wave> current_;
    qint64 position_ = 0;
};

class AudioWorker : public QObject {
public:
    explicit AudioWorker(QtSoundPlayer& owner) : owner_(owner) {}
    ~AudioWorker() override {
        if (sink_) sink_->stop();
        delete sink_;
    }

    void init() {
        rate_ = kDefaultRate;
        Wave fallback;
        const QString defaultPath = QString::fromLatin1(assets::kDefaultSound);
        QFile file(defaultPath);
        if (file.open(QIODevice::ReadOnly) && decodeWave(file.readAll(), fallback)) rate_ = fallback.rate;
        if (!fallback.samples.empty()) fallback_ = std::make_shared<const Wave>(fallback);
        for (const char* name : kKnownSounds) resolve(name);

        const QAudioDevice device = QMediaDevices::defaultAudioOutput();
        if (!device.isNull()) {
            QAudioFormat format;
            format.setSampleRate(rate_);
            format.setChannelCount(1);
            format.setSampleFormat(QAudioFormat::Int16);
            stream_.open(QIODevice::ReadOnly);
            sink_ = new QAudioSink(device, format);
            sink_->setBufferSize(rate_ * 2 / 16);  // about 60 ms: a new sound starts promptly
            sink_->start(&stream_);
            owner_.audible_ = sink_->error() == QAudio::NoError && sink_->state() != QAudio::StoppedState;
        }
        serve();
    }

    // Takes the latest request; older ones were cut off before they started anyway.
    void serve() {
        const QtSoundPlayer::Request request = owner_.takeRequest();
        if (request.serial == served_) return;
        served_ = request.serial;
        if (QDateTime::currentMSecsSinceEpoch() - request.askedMs > kStartGraceMs) return;
        std::shared_ptr<const Wave> wave = resolve(request.name);
        if (sink_) stream_.play(wave ? wave : fallback_);
    }

private:
    std::shared_ptr<const Wave> resolve(const std::string& name) {
        auto found = cache_.find(name);
        if (found != cache_.end()) return found->second;
        std::shared_ptr<const Wave> wave;
        const QString path = locateSound(name);
        QFile file(path);
        Wave decoded;
        if (!path.isEmpty() && file.open(QIODevice::ReadOnly) && decodeWave(file.readAll(), decoded))
            wave = std::make_shared<const Wave>(resampled(decoded, rate_));
        // Not found or not a wave we read: the default sound, as the classic call did.
        if (!wave) wave = fallback_;
        cache_[name] = wave;
        return wave;
    }

    QtSoundPlayer& owner_;
    int rate_ = kDefaultRate;
    std::shared_ptr<const Wave> fallback_;
    std::map<std::string, std::shared_ptr<const Wave>> cache_;
    SoundStream stream_;
    QAudioSink* sink_ = nullptr;
    std::uint64_t served_ = 0;
};

QtSoundPlayer::QtSoundPlayer() = default;

QtSoundPlayer::~QtSoundPlayer() {
    if (!thread_) return;
    thread_->quit();
    // A sound system that hangs must not hang the exit too: then the thread is left behind.
    if (thread_->wait(500)) delete thread_;
}

void QtSoundPlayer::start() {
    if (thread_) return;
    thread_ = new QThread;
    thread_->setObjectName(QStringLiteral("sound"));
    worker_ = new AudioWorker(*this);
    worker_->moveToThread(thread_);
    QObject::connect(thread_, &QThread::finished, worker_, &QObject::deleteLater);
    thread_->start(QThread::HighPriority);
    QMetaObject::invokeMethod(worker_, [w = worker_] { w->init(); }, Qt::QueuedConnection);
}

void QtSoundPlayer::playSound(const std::string& fileName) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        request_.name = fileName;
        request_.serial = ++serial_;
        request_.askedMs = QDateTime::currentMSecsSinceEpoch();
    }
    if (worker_) QMetaObject::invokeMethod(worker_, [w = worker_] { w->serve(); }, Qt::QueuedConnection);
}

bool QtSoundPlayer::audible() const { return audible_; }

QtSoundPlayer::Request QtSoundPlayer::takeRequest() {
    std::lock_guard<std::mutex> lock(mutex_);
    return request_;
}

}  // namespace quillop
