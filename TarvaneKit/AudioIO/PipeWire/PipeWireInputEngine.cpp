#include "AudioIO/PipeWire/PipeWireInputEngine.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "AudioIO/PipeWire/CaptureSession.h"

namespace TarvaneKit {

namespace {

AudioIOError inputError(const CaptureFailure& failure) {
    switch (failure.reason) {
        case CaptureFailure::Reason::noServer:
        case CaptureFailure::Reason::noDefault:
            return AudioIOError::noInputAvailable();
        case CaptureFailure::Reason::deviceGone:
            return AudioIOError::failedToSetDevice(failure.status);
        case CaptureFailure::Reason::noChannels:
            return AudioIOError::deviceHasNoInputChannels();
        case CaptureFailure::Reason::other:
            break;
    }
    return AudioIOError::engineStartFailed(failure.text);
}

}  // namespace

PipeWireInputEngine::PipeWireInputEngine(std::shared_ptr<PipeWireConnection> connection)
    : connection_(std::move(connection)),
      session_(std::make_unique<CaptureSession>(
          connection_, CaptureSession::Identity{.nodeName = "tarvane",
                                                .description = "Tarvane",
                                                .mediaName = "Measurement",
                                                .threadName = "tarvane-input"})) {}

PipeWireInputEngine::~PipeWireInputEngine() = default;

void PipeWireInputEngine::selectDevice(const AudioInputDevice& device) {
    std::vector<AudioInputDevice> devices;
    try {
        devices = connection_->inputDevices();
    } catch (const AudioIOError& error) {
        throw AudioIOError::failedToSetDevice(error.status().value_or(-ENODEV));
    }
    const bool exists = std::any_of(devices.begin(), devices.end(),
                                    [&](const auto& other) { return other.uid == device.uid; });
    if (!exists) {
        throw AudioIOError::failedToSetDevice(-ENODEV);
    }
    selectedDevice_ = device;
}

double PipeWireInputEngine::sampleRate() const {
    return session_->sampleRate();
}

std::optional<AudioInputDevice> PipeWireInputEngine::device() const {
    return session_->device();
}

void PipeWireInputEngine::start() {
    try {
        session_->start(
            selectedDevice_ ? CaptureSession::Target::device : CaptureSession::Target::defaultInput,
            selectedDevice_,
            {.onBlock = [this](const float* const* channels, int channelCount,
                               int frameCount) { deliver(channels, channelCount, frameCount); },
             .onLost = onAudioLost,
             .onEnded = onLoss});
    } catch (const CaptureFailure& failure) {
        throw inputError(failure);
    }
}

void PipeWireInputEngine::stop() {
    session_->stop();
}

CaptureStatistics PipeWireInputEngine::statistics() const {
    return session_->statistics();
}

void PipeWireInputEngine::deliver(const float* const* channels, int channelCount,
                                  int frameCount) const {
    if (onAudioBuffer) {
        onAudioBuffer(channels, channelCount, frameCount);
    } else if (onAudioBlock) {
        onAudioBlock(channels[std::clamp(selectedChannelIndex, 0, channelCount - 1)], frameCount);
    }
}

}  // namespace TarvaneKit
