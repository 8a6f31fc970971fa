// What can go wrong with audio input, in the words that the user reads.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace TarvaneKit {

/// `what()` is the finished sentence for the user.
class AudioIOError : public std::runtime_error {
  public:
    enum class Kind {
        deviceEnumerationFailed,
        failedToSetDevice,
        engineStartFailed,
        systemAudioTapFailed,
        deviceHasNoInputChannels,
        noInputAvailable,
        microphoneAccessDenied,
        systemAudioUnavailable,
    };

    /// `status` is the negative errno or the PipeWire result that the failing call gave.
    static AudioIOError deviceEnumerationFailed(std::int32_t status);
    static AudioIOError failedToSetDevice(std::int32_t status);
    static AudioIOError engineStartFailed(const std::string& underlyingDescription);
    static AudioIOError systemAudioTapFailed(std::int32_t status);
    static AudioIOError deviceHasNoInputChannels();
    static AudioIOError noInputAvailable();
    static AudioIOError microphoneAccessDenied();
    static AudioIOError systemAudioUnavailable();

    Kind kind() const { return kind_; }
    /// Present for the kinds that carry one.
    std::optional<std::int32_t> status() const { return status_; }

  private:
    AudioIOError(Kind kind, std::optional<std::int32_t> status, const std::string& description)
        : std::runtime_error(description), kind_(kind), status_(status) {}

    Kind kind_;
    std::optional<std::int32_t> status_;
};

/// Why an open source stopped delivering.
enum class AudioSourceLoss {
    deviceRemoved,  ///< unplugged, or its node destroyed
    serverLost,     ///< the audio server ended or dropped the connection
    stalled,        ///< still open, and no block came for seconds
};

/// A finished sentence for the user.
std::string description(AudioSourceLoss loss);

}  // namespace TarvaneKit
