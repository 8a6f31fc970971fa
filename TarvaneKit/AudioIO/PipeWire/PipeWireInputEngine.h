// Capture of an input device through PipeWire: all its channels in the device's own order, or one
// of them, as planar 32-bit float at the audio graph's rate, but never below 44.1 kHz.
//
// First stop on the road of a sample: PipeWire's data thread leaves each block in the source's
// ring, and the source's capture thread calls the callback. `selectDevice`, `start` and `stop` may
// each be called on any thread; a `stop` ends a `start` that is under way.
#pragma once

#include <memory>
#include <optional>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/AudioInputSource.h"
#include "AudioIO/PipeWire/CaptureStatistics.h"

namespace TarvaneKit {

class CaptureSession;
class PipeWireConnection;

class PipeWireInputEngine final : public AudioInputSource, public MultiChannelAudioSource {
  public:
    explicit PipeWireInputEngine(std::shared_ptr<PipeWireConnection> connection);
    ~PipeWireInputEngine() override;

    /// The device of the next start. Throws AudioIOError (failedToSetDevice) when there is no
    /// device of that uid.
    void selectDevice(const AudioInputDevice& device);
    /// Absent: whatever device is the default input at the start.
    const std::optional<AudioInputDevice>& selectedDevice() const { return selectedDevice_; }

    /// The channel that goes to `onAudioBlock`, clamped into those that exist. Fixed while open.
    int selectedChannelIndex = 0;

    /// Hz; 48000 before the first start. It holds from the start on, also when the graph's rate
    /// changes: PipeWire resamples then.
    double sampleRate() const override;
    std::optional<AudioInputDevice> device() const override;

    /// Opens the device and waits until audio has arrived, five seconds at most. With
    /// `onAudioBuffer` set, `onAudioBlock` isn't called. Throws AudioIOError: noInputAvailable,
    /// failedToSetDevice, deviceHasNoInputChannels or engineStartFailed.
    void start() override;
    void stop() override;

    /// Of the present or last run.
    CaptureStatistics statistics() const;

  private:
    void deliver(const float* const* channels, int channelCount, int frameCount) const;

    const std::shared_ptr<PipeWireConnection> connection_;
    const std::unique_ptr<CaptureSession> session_;
    std::optional<AudioInputDevice> selectedDevice_;
};

}  // namespace TarvaneKit
