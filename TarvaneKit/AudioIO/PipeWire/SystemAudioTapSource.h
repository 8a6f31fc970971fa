// Capture of what the machine itself plays: the default sink's monitor, as left and right, into
// which the server mixes what a sink has beside these. It follows the default when that changes;
// listening silences nothing.
//
// The road of a sample is that of a device's capture: PipeWire's data thread, the ring, the
// source's capture thread, the callback.
#pragma once

#include <memory>
#include <optional>

#include "AudioIO/AudioInputSource.h"
#include "AudioIO/PipeWire/CaptureStatistics.h"

namespace TarvaneKit {

class CaptureSession;
class PipeWireConnection;

class SystemAudioTapSource final : public MultiChannelAudioSource {
  public:
    static constexpr int channelCount = 2;

    explicit SystemAudioTapSource(std::shared_ptr<PipeWireConnection> connection);
    ~SystemAudioTapSource() override;

    /// Hz; 48000 before the first start. It holds from the start on, whatever sink follows.
    double sampleRate() const override;
    std::optional<AudioInputDevice> device() const override { return std::nullopt; }

    /// Opens the default sink's monitor and waits until audio has arrived, silence included, five
    /// seconds at most. Throws AudioIOError: systemAudioUnavailable without a server,
    /// systemAudioTapFailed with a negative errno otherwise.
    void start() override;
    void stop() override;

    /// Of the present or last run.
    CaptureStatistics statistics() const;

  private:
    const std::unique_ptr<CaptureSession> session_;
};

}  // namespace TarvaneKit
