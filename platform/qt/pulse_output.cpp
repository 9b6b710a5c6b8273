#include "platform/qt/pulse_output.h"

#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/proplist.h>
#include <pulse/stream.h>

#include <algorithm>

namespace quillop {
namespace {

// How the desktop's mixer names the game and shows its icon; the same every run, so a
// volume set for the game is kept for the next one.
constexpr char kMixerName[] = "Quillop";
constexpr char kAppId[] = "io.github.quillop.Quillop";
// The server's buffer for the stream. A new sound replaces what is queued, so this (and
// the device's own latency) is the whole delay from an event to its sound.
constexpr pa_usec_t kTargetLatencyUs = 10000;

}  // namespace

PulseOutput::PulseOutput() : loop_(pa_mainloop_new()) {}

PulseOutput::~PulseOutput() {
    closeStream();
    dropConnection();
    pa_mainloop_free(loop_);
}

void PulseOutput::wake() { pa_mainloop_wakeup(loop_); }

void PulseOutput::stop() {
    stopping_ = true;
    wake();
}

void PulseOutput::run(int rate, const std::function<void()>& poll) {
    rate_ = rate;
    connect();
    while (!stopping_) {
        poll();
        keepTime();
        const int ms = msToNextDeadline();
        if (pa_mainloop_prepare(loop_, ms < 0 ? -1 : ms * 1000) < 0) break;
        if (pa_mainloop_poll(loop_) < 0) break;
        if (pa_mainloop_dispatch(loop_) < 0) break;
    }
    closeStream();
    dropConnection();
}

void PulseOutput::play(std::shared_ptr<const Wave> wave, Clock::time_point askedAt) {
    pending_ = std::move(wave);
    pendingAskedAt_ = askedAt;
    if (!ready_) return;  // played when the stream is ready, if it is still fresh then
    if (!stream_)
        openStream();
    else
        writePending();
}

void PulseOutput::connect() {
    reconnectAt_ = Clock::now() + kReconnectEvery;
    giveUpAt_ = Clock::now() + kAnswerWithin;
    pa_proplist* props = pa_proplist_new();
    pa_proplist_sets(props, PA_PROP_APPLICATION_NAME, kMixerName);
    pa_proplist_sets(props, PA_PROP_APPLICATION_ID, kAppId);
    pa_proplist_sets(props, PA_PROP_APPLICATION_ICON_NAME, kAppId);
    context_ = pa_context_new_with_proplist(pa_mainloop_get_api(loop_), kMixerName, props);
    pa_proplist_free(props);
    if (!context_) return;
    pa_context_set_state_callback(context_, &PulseOutput::onContextState, this);
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0) contextLost_ = true;
}

void PulseOutput::dropConnection() {
    contextLost_ = false;
    ready_ = false;
    giveUpAt_ = Clock::time_point::max();
    closeStream();
    if (!context_) return;
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    context_ = nullptr;
    reconnectAt_ = Clock::now() + kReconnectEvery;
}

void PulseOutput::openStream() {
    const pa_sample_spec format{PA_SAMPLE_S16LE, static_cast<std::uint32_t>(rate_), 1};
    pa_proplist* props = pa_proplist_new();
    pa_proplist_sets(props, PA_PROP_MEDIA_NAME, kMixerName);
    pa_proplist_sets(props, PA_PROP_APPLICATION_ICON_NAME, kAppId);
    stream_ = pa_stream_new_with_proplist(context_, kMixerName, &format, nullptr, props);
    pa_proplist_free(props);
    if (!stream_) return;
    pa_stream_set_state_callback(stream_, &PulseOutput::onStreamState, this);
    pa_buffer_attr attr;
    attr.maxlength = static_cast<std::uint32_t>(-1);
    attr.tlength = static_cast<std::uint32_t>(pa_usec_to_bytes(kTargetLatencyUs, &format));
    attr.prebuf = 0;  // never wait for more data: a silent gap just plays silence
    attr.minreq = static_cast<std::uint32_t>(-1);
    attr.fragsize = static_cast<std::uint32_t>(-1);
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_START_CORKED);
    if (pa_stream_connect_playback(stream_, nullptr, &attr, flags, nullptr, nullptr) < 0) streamLost_ = true;
    paused_ = true;
}

void PulseOutput::rest(bool paused) {
    restAt_ = Clock::time_point::max();
    if (paused_ == paused) return;
    paused_ = paused;
    if (pa_operation* op = pa_stream_cork(stream_, paused ? 1 : 0, nullptr, nullptr)) pa_operation_unref(op);
}

void PulseOutput::closeStream() {
    streamLost_ = false;
    streamReady_ = false;
    restAt_ = Clock::time_point::max();
    if (!stream_) return;
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
}

void PulseOutput::writePending() {
    if (!pending_ || !streamReady_) return;
    const std::shared_ptr<const Wave> wave = std::move(pending_);
    const Clock::time_point now = Clock::now();
    if (now - pendingAskedAt_ > kStaleAfter) return;
    rest(false);
    // What is still queued is the sound being cut off: drop it so the new one starts now.
    if (pa_operation* flushed = pa_stream_flush(stream_, nullptr, nullptr)) pa_operation_unref(flushed);
    if (!wave->samples.empty())
        pa_stream_write(stream_, wave->samples.data(), wave->samples.size() * sizeof(std::int16_t), nullptr, 0,
                        PA_SEEK_RELATIVE);
    restAt_ = now + std::chrono::milliseconds(wave->samples.size() * 1000 / std::max(1, rate_)) + kIdleRest;
}

void PulseOutput::keepTime() {
    if (contextLost_) dropConnection();
    if (streamLost_) closeStream();
    const Clock::time_point now = Clock::now();
    if (context_ && now >= giveUpAt_) dropConnection();
    if (!context_ && now >= reconnectAt_) connect();
    if (streamReady_ && now >= restAt_) rest(true);
}

int PulseOutput::msToNextDeadline() const {
    if (contextLost_ || streamLost_) return 0;  // a connection that failed at once
    Clock::time_point next = context_ ? giveUpAt_ : reconnectAt_;
    if (streamReady_) next = std::min(next, restAt_);
    if (next == Clock::time_point::max()) return -1;
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(next - Clock::now()).count() + 1;
    return static_cast<int>(std::clamp<long long>(ms, 0, 60000));
}

void PulseOutput::onContextState(pa_context* c, void* self) {
    auto* out = static_cast<PulseOutput*>(self);
    switch (pa_context_get_state(c)) {
    case PA_CONTEXT_READY:
        out->ready_ = true;
        out->giveUpAt_ = Clock::time_point::max();
        out->openStream();
        break;
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
        out->ready_ = false;
        out->contextLost_ = true;
        break;
    default:
        break;
    }
}

void PulseOutput::onStreamState(pa_stream* s, void* self) {
    auto* out = static_cast<PulseOutput*>(self);
    switch (pa_stream_get_state(s)) {
    case PA_STREAM_READY:
        out->streamReady_ = true;
        out->writePending();
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        out->streamLost_ = true;
        break;
    default:
        break;
    }
}

}  // namespace quillop
