#include "AudioIO/PipeWire/PipeWireAudioSystem.h"

#include <algorithm>
#include <utility>

#include "AudioIO/AudioIOError.h"
#include "AudioIO/PipeWire/PipeWireConnection.h"
#include "AudioIO/PipeWire/PipeWireInputEngine.h"
#include "AudioIO/PipeWire/SystemAudioTapSource.h"

namespace TarvaneKit {

namespace {

// PipeWire reports a device's controls as a whole: the listener hears of all its inputs.
class Observation final : public InputVolumeObservation {
  public:
    Observation(std::shared_ptr<PipeWireConnection> connection, std::uint32_t deviceID,
                std::function<void()> handler)
        : connection_(std::move(connection)), listener_{deviceID, std::move(handler)} {
        connection_->addListener(listener_);
    }
    ~Observation() override { connection_->removeListener(listener_); }

  private:
    const std::shared_ptr<PipeWireConnection> connection_;
    PipeWireConnection::ControlsListener listener_;
};

}  // namespace

PipeWireAudioSystem::PipeWireAudioSystem() : connection_(std::make_shared<PipeWireConnection>()) {}

PipeWireAudioSystem::~PipeWireAudioSystem() {
    connection_->setChangedHandler(nullptr);
}

std::vector<AudioInputDevice> PipeWireAudioSystem::availableInputDevices() {
    return connection_->inputDevices();
}

int PipeWireAudioSystem::inputChannelCount(std::uint32_t deviceID) {
    try {
        const auto devices = connection_->inputDevices();
        const auto found = std::find_if(devices.begin(), devices.end(),
                                        [&](const auto& device) { return device.id == deviceID; });
        return found != devices.end() ? found->channelCount : 0;
    } catch (const AudioIOError&) {
        return 0;
    }
}

std::optional<std::uint32_t> PipeWireAudioSystem::defaultInputDeviceID() {
    return connection_->defaultInputDeviceID();
}

std::optional<TransportType> PipeWireAudioSystem::transportType(std::uint32_t deviceID) {
    return connection_->transportType(deviceID);
}

std::optional<float> PipeWireAudioSystem::inputVolumeScalar(std::uint32_t deviceID, int channel) {
    return connection_->controls(deviceID).scalar(channel);
}

std::optional<InputGainState> PipeWireAudioSystem::inputGainDB(std::uint32_t deviceID,
                                                               int channel) {
    return connection_->controls(deviceID).gain(channel);
}

bool PipeWireAudioSystem::setInputGainDB(double gainDB, std::uint32_t deviceID,
                                         const std::vector<int>& channels) {
    const auto wanted = connection_->controls(deviceID).withGain(gainDB, channels);
    return wanted && connection_->setControls(deviceID, *wanted);
}

bool PipeWireAudioSystem::setInputVolumeScalar(float volume, std::uint32_t deviceID,
                                               const std::vector<int>& channels) {
    const auto wanted = connection_->controls(deviceID).withScalar(volume, channels);
    return wanted && connection_->setControls(deviceID, *wanted);
}

std::unique_ptr<InputVolumeObservation> PipeWireAudioSystem::observeInputVolume(
    std::uint32_t deviceID, const std::vector<int>&, std::function<void()> handler) {
    return std::make_unique<Observation>(connection_, deviceID, std::move(handler));
}

MicrophoneAuthorization PipeWireAudioSystem::microphoneAuthorizationStatus() {
    return MicrophoneAuthorization::authorized;
}

void PipeWireAudioSystem::requestMicrophoneAccess(std::function<void(bool)> completion) {
    completion(true);
}

std::unique_ptr<MultiChannelAudioSource> PipeWireAudioSystem::makeDeviceSource(
    const std::optional<AudioInputDevice>& device) {
    auto source = std::make_unique<PipeWireInputEngine>(connection_);
    if (device) {
        source->selectDevice(*device);
    }
    return source;
}

std::unique_ptr<MultiChannelAudioSource> PipeWireAudioSystem::makeSystemOutputSource() {
    return std::make_unique<SystemAudioTapSource>(connection_);
}

void PipeWireAudioSystem::setDevicesChangedHandler(std::function<void()> handler) {
    connection_->setChangedHandler(std::move(handler));
}

}  // namespace TarvaneKit
