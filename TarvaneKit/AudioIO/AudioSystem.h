// The machine's audio, as far as the engine needs it: which inputs there are, and a source for
// each. The platform's implementation and the made-up one of the tests stand behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/AudioInputSource.h"
#include "Calibration/CalibrationProfile.h"

namespace TarvaneKit {

enum class MicrophoneAuthorization { undetermined, restricted, denied, authorized };

enum class TransportType {
    hardware,
    virtualDevice,  ///< software: a loopback, a network feed, another program
};

/// Keeps a listener to a device's controls in place. When its destructor has returned, the
/// listener isn't running and won't be called again.
class InputVolumeObservation {
  public:
    virtual ~InputVolumeObservation() = default;
};

/// Every operation may be called on any thread and answers within milliseconds, whatever the audio
/// server does, but for the `start()` of a source it made. Only in the first half second of the
/// system's life an answer may wait for the server's first.
class AudioSystem {
  public:
    virtual ~AudioSystem() = default;

    /// Inputs in the system's order, empty when there are none. Throws AudioIOError
    /// (deviceEnumerationFailed) when the list can't be had.
    virtual std::vector<AudioInputDevice> availableInputDevices() = 0;
    /// 0 when it can't be read.
    virtual int inputChannelCount(std::uint32_t deviceID) = 0;
    virtual std::optional<std::uint32_t> defaultInputDeviceID() = 0;
    virtual std::optional<TransportType> transportType(std::uint32_t deviceID) = 0;

    // A device's own controls of its inputs, which are numbered from 0. A device may have one
    // control for all of them, or none that a program can reach.

    /// 0 to 1; absent where the device has no volume for that input.
    virtual std::optional<float> inputVolumeScalar(std::uint32_t deviceID, int channel) = 0;
    /// Absent where the device has no control in dB.
    virtual std::optional<InputGainState> inputGainDB(std::uint32_t deviceID, int channel) = 0;
    /// Sets the controls of these inputs, or else the one for all. True if one took the value;
    /// what it then reads comes by way of the observations.
    virtual bool setInputGainDB(double gainDB, std::uint32_t deviceID,
                                const std::vector<int>& channels) = 0;
    virtual bool setInputVolumeScalar(float volume, std::uint32_t deviceID,
                                      const std::vector<int>& channels) = 0;
    /// Calls `handler`, on any thread, when one of these inputs' controls may read differently;
    /// never for a device without.
    virtual std::unique_ptr<InputVolumeObservation> observeInputVolume(
        std::uint32_t deviceID, const std::vector<int>& channels,
        std::function<void()> handler) = 0;

    virtual MicrophoneAuthorization microphoneAuthorizationStatus() = 0;
    /// `completion(granted)` comes once, on any thread.
    virtual void requestMicrophoneAccess(std::function<void(bool)> completion) = 0;

    /// A source, not started, for that device, or for what is the default input at its start when
    /// none is given. Throws AudioIOError when the device can't be selected.
    virtual std::unique_ptr<MultiChannelAudioSource> makeDeviceSource(
        const std::optional<AudioInputDevice>& device) = 0;
    /// A source, not started, for what the machine plays. Throws AudioIOError
    /// (systemAudioUnavailable) where there is no such capture.
    virtual std::unique_ptr<MultiChannelAudioSource> makeSystemOutputSource() = 0;

    /// The device list or the default input may have changed. Set before the first use of the
    /// system and cleared when its listener goes; called on any thread.
    virtual void setDevicesChangedHandler(std::function<void()> handler) = 0;
};

}  // namespace TarvaneKit
