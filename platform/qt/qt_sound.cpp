#include "platform/qt/qt_sound.h"

#include <QFile>
#include <QtGlobal>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <map>
#include <mutex>

#include "game/sounds.h"
#include "platform/qt/pulse_output.h"
#include "resources/assets.h"

namespace quillop {
namespace {

constexpr int kDefaultRate = 22050;
// A sound system that hangs must not hang the exit too: then the thread is left behind.
constexpr auto kExitWait = std::chrono::milliseconds(500);

// With QUILLOP_SOUND_LOG set, every sound asked for is written to stderr with the wall
// clock's time, so the delay to its being heard can be measured from outside.
void logRequest(const std::string& name) {
    static const bool enabled = qEnvironmentVariableIsSet("QUILLOP_SOUND_LOG");
    if (!enabled) return;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    std::fprintf(stderr, "quillop-sound %lld %s\n", now.tv_sec * 1000000000LL + now.tv_nsec, name.c_str());
}

// The decoded sounds by name, all at one rate; a name that finds nothing plays the default.
class SoundLibrary {
public:
    SoundLibrary() {
        fallback_ = loadWaveFile(QString::fromLatin1(assets::kDefaultSound), 0);
        rate_ = fallback_ ? fallback_->rate : kDefaultRate;
        for (const char* name : kSoundFiles) wave(name);
    }
    int rate() const { return rate_; }
    std::shared_ptr<const Wave> wave(const std::string& name) {
        auto found = cache_.find(name);
        if (found != cache_.end()) return found->second;
        std::shared_ptr<const Wave> wave = loadSound(name, rate_);
        if (!wave) wave = fallback_;
        cache_[name] = wave;
        return wave;
    }

private:
    int rate_ = kDefaultRate;
    std::shared_ptr<const Wave> fallback_;
    std::map<std::string, std::shared_ptr<const Wave>> cache_;
};

}  // namespace

// What the game's thread and the sound thread share; it outlives a sound thread left
// behind at exit. The latest request waits in a one-place mailbox that neither side ever
// waits for: a newer request replaces one not yet taken.
struct QtSoundPlayer::Shared {
    struct Request {
        std::string name;
        PulseOutput::Clock::time_point askedAt;
    };
    ~Shared() { delete mailbox.load(); }

    PulseOutput output;
    std::atomic<Request*> mailbox{nullptr};
    std::atomic<bool> audible{false};
    std::mutex doneMutex;
    std::condition_variable doneSignal;
    bool done = false;
};

namespace {

void runSoundThread(const std::shared_ptr<QtSoundPlayer::Shared>& shared) {
    SoundLibrary library;
    shared->output.run(library.rate(), [&] {
        shared->audible = shared->output.connected();
        const std::unique_ptr<QtSoundPlayer::Shared::Request> request(shared->mailbox.exchange(nullptr));
        if (request) shared->output.play(library.wave(request->name), request->askedAt);
    });
    std::lock_guard<std::mutex> lock(shared->doneMutex);
    shared->done = true;
    shared->doneSignal.notify_all();
}

}  // namespace

QtSoundPlayer::QtSoundPlayer() : shared_(std::make_shared<Shared>()) {}

QtSoundPlayer::~QtSoundPlayer() {
    if (!thread_.joinable()) return;
    shared_->output.stop();
    std::unique_lock<std::mutex> lock(shared_->doneMutex);
    if (shared_->doneSignal.wait_for(lock, kExitWait, [this] { return shared_->done; })) {
        lock.unlock();
        thread_.join();
    } else {
        thread_.detach();
    }
}

void QtSoundPlayer::start() {
    if (thread_.joinable()) return;
    thread_ = std::thread(runSoundThread, shared_);
}

void QtSoundPlayer::playSound(const std::string& fileName) {
    logRequest(fileName);
    auto* request = new Shared::Request{fileName, PulseOutput::Clock::now()};
    delete shared_->mailbox.exchange(request);
    if (thread_.joinable()) shared_->output.wake();
}

bool QtSoundPlayer::audible() const { return shared_->audible; }

}  // namespace quillop
