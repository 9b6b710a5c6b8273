// The game's one voice on the desktop's sound server, spoken through the PulseAudio
// protocol (PulseAudio itself, or PipeWire's PulseAudio service). Everything here runs on
// the sound thread, inside run(); only wake() and stop() may be called from elsewhere.
//
// The stream is opened as soon as the server answers, so no sound waits for that. A sound is
// written whole the moment it is asked for, after dropping what is still queued, so it
// starts after the server's own short buffer and nothing else. The stream is paused (corked)
// a few seconds after the last sound has ended, so the device can rest, and resumed by the
// next sound. A lost server is looked for again every second.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/qt/wave_file.h"

struct pa_context;
struct pa_mainloop;
struct pa_stream;

namespace quillop {

class PulseOutput {
public:
    using Clock = std::chrono::steady_clock;
    // How long the stream keeps running after the last sound has ended.
    static constexpr std::chrono::milliseconds kIdleRest{3000};
    // How often a missing or lost server is looked for, and how long one that takes the
    // connection but does not answer is waited for.
    static constexpr std::chrono::milliseconds kReconnectEvery{1000};
    static constexpr std::chrono::milliseconds kAnswerWithin{5000};
    // A sound that waited longer than this for the server is dropped, not played late.
    static constexpr std::chrono::milliseconds kStaleAfter{2000};

    PulseOutput();
    ~PulseOutput();
    PulseOutput(const PulseOutput&) = delete;
    PulseOutput& operator=(const PulseOutput&) = delete;

    // The sound thread's loop: plays mono 16-bit sound at the given rate, serves the server
    // and calls poll after every wake-up, until stop(). Returns with everything closed.
    void run(int rate, const std::function<void()>& poll);
    // From any thread: have run() call its poll soon; never waits.
    void wake();
    void stop();

    // From poll: plays the wave now, cutting off the one playing.
    void play(std::shared_ptr<const Wave> wave, Clock::time_point askedAt);
    bool connected() const { return ready_; }

private:
    void connect();
    void dropConnection();
    void openStream();
    void closeStream();
    void rest(bool paused);
    void writePending();
    void keepTime();
    int msToNextDeadline() const;

    static void onContextState(pa_context* c, void* self);
    static void onStreamState(pa_stream* s, void* self);

    int rate_ = 22050;
    pa_mainloop* loop_ = nullptr;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
    std::atomic<bool> stopping_{false};
    bool ready_ = false;
    bool contextLost_ = false;
    bool streamReady_ = false;
    bool streamLost_ = false;
    bool paused_ = false;
    std::shared_ptr<const Wave> pending_;
    Clock::time_point pendingAskedAt_{};
    Clock::time_point reconnectAt_{};
    Clock::time_point giveUpAt_ = Clock::time_point::max();
    Clock::time_point restAt_ = Clock::time_point::max();
};

}  // namespace quillop
