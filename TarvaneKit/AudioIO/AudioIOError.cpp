#include "AudioIO/AudioIOError.h"

#include <fmt/format.h>

namespace TarvaneKit {

AudioIOError AudioIOError::deviceEnumerationFailed(std::int32_t status) {
    return {Kind::deviceEnumerationFailed, status,
            fmt::format("Failed to enumerate audio devices (OSStatus {}).", status)};
}

AudioIOError AudioIOError::failedToSetDevice(std::int32_t status) {
    return {Kind::failedToSetDevice, status,
            fmt::format("Failed to select the audio input device (OSStatus {}).", status)};
}

AudioIOError AudioIOError::engineStartFailed(const std::string& underlyingDescription) {
    return {Kind::engineStartFailed, std::nullopt,
            "Failed to start the audio engine: " + underlyingDescription};
}

AudioIOError AudioIOError::systemAudioTapFailed(std::int32_t status) {
    return {Kind::systemAudioTapFailed, status,
            fmt::format("Couldn't capture the Mac's output (OSStatus {}). Check System Settings > "
                        "Privacy & Security > Screen & System Audio Recording.",
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
            "Tarvane isn't allowed to use the microphone. Open System Settings > Privacy & "
            "Security > Microphone, turn on Tarvane, then relaunch the app."};
}

AudioIOError AudioIOError::systemAudioUnavailable() {
    return {Kind::systemAudioUnavailable, std::nullopt,
            "Measuring the Mac's own output (System Output) needs macOS 14.2 or later."};
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
