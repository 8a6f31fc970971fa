// The contract of everything that delivers audio.
//
// A source hands over blocks of 32-bit float samples, not interleaved, 1.0 being full scale, on
// a thread of its own. The owner sets the callbacks before `start()` and clears them after
// `stop()` has returned; between the two no callback may change.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "AudioIO/AudioIOError.h"
#include "AudioIO/AudioInputDevice.h"

namespace TarvaneKit {

/// One selected channel of a device.
class AudioInputSource {
  public:
    virtual ~AudioInputSource() = default;

    virtual double sampleRate() const = 0;
    /// May take as long as the device takes to open, within the source's time limit.
    /// Throws AudioIOError; the source is then as before the call.
    virtual void start() = 0;
    virtual void stop() = 0;

    std::function<void(const float* samples, int frameCount)> onAudioBlock;
};

/// All channels of a device at once.
class MultiChannelAudioSource {
  public:
    virtual ~MultiChannelAudioSource() = default;

    /// Hz. Valid once `start()` has returned.
    virtual double sampleRate() const = 0;
    /// What it captures from, once `start()` has returned; of the default input the device that
    /// it was then. Absent for the system's output.
    virtual std::optional<AudioInputDevice> device() const = 0;
    /// May take as long as the device takes to open, within the source's time limit. When it has
    /// returned, audio has arrived. Throws AudioIOError; the source is then as before the call.
    virtual void start() = 0;
    /// When it has returned, no callback is running and none will come. A `start()` that is under
    /// way in another thread ends at once, by AudioIOError; one that comes later doesn't. Waits for
    /// callbacks that are running, and for nothing else.
    virtual void stop() = 0;

    /// `channels[channel][frame]`, valid for the call only. Blocks come whole, in order, one
    /// call each, on the source's capture thread.
    std::function<void(const float* const* channels, int channelCount, int frameCount)>
        onAudioBuffer;

    /// So many frames, at the source's rate, are missing ahead of the next block: the server
    /// passed us over, or we were late. On the capture thread, in order with the blocks.
    std::function<void(std::int64_t frameCount)> onAudioLost;

    /// The source has stopped delivering and won't go on by itself. At most once per start, on
    /// any thread, and not from within `start()` or `stop()`. The owner still calls `stop()`,
    /// though not from within this callback.
    std::function<void(AudioSourceLoss)> onLoss;
};

}  // namespace TarvaneKit
