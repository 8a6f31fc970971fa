#include "AudioIO/AudioIOError.h"

#include <fmt/format.h>

namespace TarvaneKit {

AudioIOError AudioIOError::deviceEnumerationFailed(std::int32_t status) {
    return {Kind::deviceEnumerationFailed, status,
            fmt::format("Failed to enumerate audio devices (error {}).", status)};
}

AudioIOError AudioIOError::failedToSetDevice(std::int32_t status) {
    return {Kind::failedToSetDevice, status,
            fmt::format("Failed to select the audio input device (error {}).", status)};
}

AudioIOError AudioIOError::engineStartFailed(const std::string& underlyingDescription) {
    return {Kind::engineStartFailed, std::nullopt,
            "Failed to start the audio engine: " + underlyingDescription};
}

AudioIOError AudioIOError::systemAudioTapFailed(std::int32_t status) {
    return {Kind::systemAudioTapFailed, status,
            fmt::format("Couldn't capture the computer's output (error {}). Check that the audio "
                        "server is running and that an output device is selected in the system's "
                        "sound settings.",
                        status)};
}

AudioIOError AudioIOError::deviceHasNoInputChannels() {
    return {Kind::deviceHasNoInputChannels, std::nullopt,
            "The selected device has no input channels."};
}

AudioIOError AudioIOError::noInputAvailable() {
    return {Kind::noInputAvailable, std::nullopt, "No audio input device is available."};
}

AudioIOError AudioIOError::microphoneAccessDenied() {
    return {Kind::microphoneAccessDenied, std::nullopt,
            "Tarvane isn't allowed to use the microphone. Open the system's privacy settings, turn "
            "on the microphone for Tarvane, then relaunch the app."};
}

AudioIOError AudioIOError::systemAudioUnavailable() {
    return {Kind::systemAudioUnavailable, std::nullopt,
            "Measuring the computer's own output (System Output) needs PipeWire 0.3.65 or later."};
}

std::string description(AudioSourceLoss loss) {
    switch (loss) {
        case AudioSourceLoss::deviceRemoved:
            return "The device was disconnected.";
        case AudioSourceLoss::serverLost:
            return "The audio server stopped.";
        case AudioSourceLoss::stalled:
            break;
    }
    return "The device delivers no audio.";
}

}  // namespace TarvaneKit
