// The machine's audio by PipeWire: the device list, the defaults, and a source for each.
#pragma once

#include <memory>

#include "AudioIO/AudioSystem.h"

namespace TarvaneKit {

class PipeWireConnection;

class PipeWireAudioSystem : public AudioSystem {
  public:
    /// No server is no error: the system connects when one appears, and again after its death.
    PipeWireAudioSystem();
    ~PipeWireAudioSystem() override;

    std::vector<AudioInputDevice> availableInputDevices() override;
    int inputChannelCount(std::uint32_t deviceID) override;
    std::optional<std::uint32_t> defaultInputDeviceID() override;
    std::optional<TransportType> transportType(std::uint32_t deviceID) override;

    std::optional<float> inputVolumeScalar(std::uint32_t deviceID, int channel) override;
    std::optional<InputGainState> inputGainDB(std::uint32_t deviceID, int channel) override;
    bool setInputGainDB(double gainDB, std::uint32_t deviceID,
                        const std::vector<int>& channels) override;
    bool setInputVolumeScalar(float volume, std::uint32_t deviceID,
                              const std::vector<int>& channels) override;
    std::unique_ptr<InputVolumeObservation> observeInputVolume(
        std::uint32_t deviceID, const std::vector<int>& channels,
        std::function<void()> handler) override;

    /// PipeWire asks nobody for leave: always authorized.
    MicrophoneAuthorization microphoneAuthorizationStatus() override;
    void requestMicrophoneAccess(std::function<void(bool)> completion) override;

    std::unique_ptr<MultiChannelAudioSource> makeDeviceSource(
        const std::optional<AudioInputDevice>& device) override;
    std::unique_ptr<MultiChannelAudioSource> makeSystemOutputSource() override;

    void setDevicesChangedHandler(std::function<void()> handler) override;

    /// What sources are made on; they keep it alive.
    const std::shared_ptr<PipeWireConnection>& connection() const { return connection_; }

  private:
    const std::shared_ptr<PipeWireConnection> connection_;
};

}  // namespace TarvaneKit
