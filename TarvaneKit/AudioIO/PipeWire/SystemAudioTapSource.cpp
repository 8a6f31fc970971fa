#include "AudioIO/PipeWire/SystemAudioTapSource.h"

#include <utility>

#include "AudioIO/PipeWire/CaptureSession.h"

namespace TarvaneKit {

SystemAudioTapSource::SystemAudioTapSource(std::shared_ptr<PipeWireConnection> connection)
    : session_(std::make_unique<CaptureSession>(
          std::move(connection), CaptureSession::Identity{.nodeName = "tarvane-system-output",
                                                          .description = "Tarvane System Output",
                                                          .mediaName = "System Output",
                                                          .threadName = "tarvane-output"})) {}

SystemAudioTapSource::~SystemAudioTapSource() = default;

double SystemAudioTapSource::sampleRate() const {
    return session_->sampleRate();
}

void SystemAudioTapSource::start() {
    try {
        session_->start(CaptureSession::Target::defaultOutput, std::nullopt,
                        {.onBlock =
                             [this](const float* const* channels, int count, int frameCount) {
                                 if (onAudioBuffer) {
                                     onAudioBuffer(channels, count, frameCount);
                                 }
                             },
                         .onLost = onAudioLost,
                         .onEnded = onLoss});
    } catch (const CaptureFailure& failure) {
        if (failure.reason == CaptureFailure::Reason::noServer) {
            throw AudioIOError::systemAudioUnavailable();
        }
        throw AudioIOError::systemAudioTapFailed(failure.status);
    }
}

void SystemAudioTapSource::stop() {
    session_->stop();
}

CaptureStatistics SystemAudioTapSource::statistics() const {
    return session_->statistics();
}

}  // namespace TarvaneKit
