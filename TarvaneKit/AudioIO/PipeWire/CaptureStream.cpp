#include "AudioIO/PipeWire/CaptureStream.h"

#include <spa/param/audio/format-utils.h>
#include <spa/param/props.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <span>

#include "Core/RealtimeScope.h"

namespace TarvaneKit {

namespace {

pw_properties* streamProperties(const CaptureStream::Request& request) {
    pw_properties* properties = pw_properties_new(
        PW_KEY_MEDIA_TYPE, "Audio",                            //
        PW_KEY_MEDIA_CATEGORY, "Capture",                      //
        PW_KEY_MEDIA_NAME, request.mediaName.c_str(),          //
        PW_KEY_NODE_NAME, request.nodeName.c_str(),            //
        PW_KEY_NODE_DESCRIPTION, request.description.c_str(),  //
        PW_KEY_APP_ID, "org.brenlow.tarvane",                  //
        PW_KEY_APP_NAME, "Tarvane",                            //
        PW_KEY_TARGET_OBJECT, request.targetSerial.c_str(),    //
        PW_KEY_NODE_LATENCY, "256/48000",                      //
        // A session manager may neither move the stream nor give it a volume of the past.
        PW_KEY_NODE_DONT_RECONNECT, "true",  //
        "state.restore-props", "false",      //
        "state.restore-target", "false", nullptr);
    if (request.capturesSink) {
        pw_properties_set(properties, PW_KEY_STREAM_CAPTURE_SINK, "true");
    }
    return properties;
}

// AUX positions leave the channels in the device's own order, whatever it calls them. What a
// machine plays is taken as left and right instead, so that it comes as stereo from any sink.
spa_audio_info_raw format(const CaptureStream::Request& request) {
    spa_audio_info_raw info = {};
    info.format = SPA_AUDIO_FORMAT_F32P;
    info.rate = static_cast<std::uint32_t>(request.rate);
    info.channels = static_cast<std::uint32_t>(request.channelCount);
    if (request.capturesSink) {
        info.position[0] = SPA_AUDIO_CHANNEL_FL;
        info.position[1] = SPA_AUDIO_CHANNEL_FR;
    } else {
        for (std::uint32_t channel = 0; channel < info.channels; ++channel) {
            info.position[channel] = SPA_AUDIO_CHANNEL_AUX0 + channel;
        }
    }
    return info;
}

}  // namespace

CaptureStatistics CaptureCounters::read() const {
    return {blocks.load(), frames.load(), droppedBlocks.load(), droppedFrames.load(),
            missedTicks.load()};
}

void CaptureCounters::reset() {
    blocks = 0;
    frames = 0;
    droppedBlocks = 0;
    droppedFrames = 0;
    missedTicks = 0;
}

CaptureStream::CaptureStream(pw_core* core, const Request& request, CaptureThread& thread,
                             CaptureCounters& counters, Owner& owner)
    : thread_(thread), counters_(counters), owner_(owner) {
    stream_ = pw_stream_new(core, request.mediaName.c_str(), streamProperties(request));
    if (stream_ == nullptr) {
        status_ = -errno;
        state_ = PW_STREAM_STATE_ERROR;
        return;
    }
    connect(request);
}

CaptureStream::~CaptureStream() {
    if (stream_ != nullptr) {
        spa_hook_remove(&hook_);
        pw_stream_destroy(stream_);
    }
}

void CaptureStream::connect(const Request& request) {
    static const pw_stream_events events = [] {
        pw_stream_events e = {};
        e.version = PW_VERSION_STREAM_EVENTS;
        e.state_changed = onStateChanged;
        e.control_info = onControlInfo;
        e.param_changed = onParamChanged;
        e.process = onProcess;
        return e;
    }();
    pw_stream_add_listener(stream_, &hook_, &events, this);

    std::uint8_t storage[1024];
    spa_pod_builder builder = {};
    spa_pod_builder_init(&builder, storage, sizeof storage);
    spa_audio_info_raw info = format(request);
    const spa_pod* params[] = {spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
    const auto flags =
        static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                     PW_STREAM_FLAG_RT_PROCESS | PW_STREAM_FLAG_DONT_RECONNECT);
    const int result = pw_stream_connect(stream_, PW_DIRECTION_INPUT, PW_ID_ANY, flags, params, 1);
    if (result < 0) {
        status_ = result;
        state_ = PW_STREAM_STATE_ERROR;
    }
}

std::uint32_t CaptureStream::nodeID() const {
    return stream_ != nullptr ? pw_stream_get_node_id(stream_) : SPA_ID_INVALID;
}

void CaptureStream::onStateChanged(void* data, pw_stream_state, pw_stream_state state,
                                   const char* error) {
    auto& self = *static_cast<CaptureStream*>(data);
    self.state_ = state;
    // What the server pauses isn't passed over: it was told to stand still, for a change of the
    // graph's rate or because its device is suspended, and captured nothing that could be lost. The
    // clock of the others goes on meanwhile, so that what follows has no place on it. A pause that
    // lasts is a stall, and the session says so.
    if (state != PW_STREAM_STATE_STREAMING) {
        self.followsOnNothing_.store(true, std::memory_order_release);
    }
    self.wasConnecting_ = self.wasConnecting_ || state >= PW_STREAM_STATE_CONNECTING;
    if (error != nullptr) {
        self.failure_ = error;
    }
    self.owner_.streamChanged();
}

// A stream has a volume and a mute of its own, which any mixer may set and which would scale what
// is measured. They are put back at once.
void CaptureStream::onControlInfo(void* data, std::uint32_t id, const pw_stream_control* control) {
    auto& self = *static_cast<CaptureStream*>(data);
    const bool isVolume = id == SPA_PROP_volume || id == SPA_PROP_channelVolumes;
    if ((!isVolume && id != SPA_PROP_mute) || control == nullptr || control->n_values == 0) {
        return;
    }
    const float neutral = isVolume ? 1.0f : 0.0f;
    const auto set = std::span(control->values, control->n_values);
    if (std::any_of(set.begin(), set.end(), [neutral](float value) { return value != neutral; })) {
        std::vector<float> values(control->n_values, neutral);
        pw_stream_set_control(self.stream_, id, control->n_values, values.data(), 0);
    }
}

void CaptureStream::onParamChanged(void* data, std::uint32_t id, const spa_pod* param) {
    auto& self = *static_cast<CaptureStream*>(data);
    if (id != SPA_PARAM_Format) {
        return;
    }
    self.isAccepting_.store(false, std::memory_order_release);
    spa_audio_info_raw info = {};
    if (param == nullptr || spa_format_audio_raw_parse(param, &info) < 0) {
        return;
    }
    self.rate_ = static_cast<int>(info.rate);
    self.planes_.assign(info.channels, nullptr);
    self.followsOnNothing_.store(true, std::memory_order_release);
    const bool accepted = self.owner_.acceptFormat(self.rate_, static_cast<int>(info.channels));
    self.isRefused_ = !accepted;
    self.isAccepting_.store(accepted, std::memory_order_release);
    self.owner_.streamChanged();
}

void CaptureStream::onProcess(void* data) {
    const RealtimeScope scope;
    auto& self = *static_cast<CaptureStream*>(data);
    const bool isAccepting = self.isAccepting_.load(std::memory_order_acquire);
    while (pw_buffer* buffer = pw_stream_dequeue_buffer(self.stream_)) {
        if (isAccepting) {
            self.pushBuffer(*buffer->buffer);
        }
        pw_stream_queue_buffer(self.stream_, buffer);
    }
}

void CaptureStream::pushBuffer(const spa_buffer& buffer) {
    if (buffer.n_datas < planes_.size()) {
        return;
    }
    std::size_t frames = SIZE_MAX;
    for (std::size_t channel = 0; channel < planes_.size(); ++channel) {
        const spa_data& plane = buffer.datas[channel];
        const std::uint32_t offset = std::min(plane.chunk->offset, plane.maxsize);
        const std::uint32_t size = std::min(plane.chunk->size, plane.maxsize - offset);
        frames = std::min(frames, size / sizeof(float));
        const bool isSilence =
            (static_cast<std::uint32_t>(plane.chunk->flags) & SPA_CHUNK_FLAG_EMPTY) != 0;
        planes_[channel] = isSilence || plane.data == nullptr
                               ? nullptr
                               : reinterpret_cast<const float*>(
                                     static_cast<const std::byte*>(plane.data) + offset);
    }
    const int frameCount = static_cast<int>(frames);
    if (planes_.empty() || frameCount == 0) {
        return;
    }
    const std::int64_t missing = missingFrames(frameCount);
    counters_.frames.fetch_add(frameCount, std::memory_order_relaxed);
    counters_.blocks.fetch_add(1, std::memory_order_relaxed);
    if (!thread_.push(planes_.data(), frameCount, missing)) {
        counters_.droppedBlocks.fetch_add(1, std::memory_order_relaxed);
        counters_.droppedFrames.fetch_add(frameCount, std::memory_order_relaxed);
    }
}

// The graph's clock goes on by a block's length from one block to the next, or by more when this
// stream's turn was passed over. What a device's driver lost ahead of the graph comes as silence,
// or not at all, and can't be told from here.
std::int64_t CaptureStream::missingFrames(int frameCount) {
    pw_time time = {};
    if (pw_stream_get_time_n(stream_, &time, sizeof time) < 0 || time.rate.num == 0) {
        return 0;
    }
    const double ticksPerSecond = static_cast<double>(time.rate.denom) / time.rate.num;
    std::int64_t missing = 0;
    if (followsOnNothing_.exchange(false, std::memory_order_acquire) ||
        ticksPerSecond != ticksPerSecond_) {
        missing = framesOf(continuity_.restart());
        ticksPerSecond_ = ticksPerSecond;
    }
    const double blockTicks = frameCount * ticksPerSecond / rate_;
    return missing + framesOf(continuity_.missingTicks(time.ticks, blockTicks));
}

std::int64_t CaptureStream::framesOf(double missedTicks) {
    if (missedTicks <= 0) {
        return 0;
    }
    counters_.missedTicks.fetch_add(std::llround(missedTicks), std::memory_order_relaxed);
    return std::llround(missedTicks * rate_ / ticksPerSecond_);
}

}  // namespace TarvaneKit
