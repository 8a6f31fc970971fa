#include "Engine/MeterEngine.h"

#include "Engine/CalibrationProfiles.h"
#include "Engine/EngineOwners.h"
#include "Settings/KeyValueStore.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::InputGainState;
using TarvaneKit::OctaveBand;
using TarvaneKit::RGBAColor;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;

MeterEngine::MeterEngine(const Environment& environment, QObject* parent)
    : QObject(parent),
      MeterSettings(environment.store),
      owners_(std::make_unique<Owners>(environment, *this)),
      isRunning(owners_->run.isRunning),
      isStarting(owners_->run.isStarting),
      isPaused(owners_->run.isPaused),
      microphonePermissionDenied(owners_->run.microphonePermissionDenied),
      channelSourcesChangedWhileRunning(owners_->run.channelSourcesChangedWhileRunning),
      sampleRate(owners_->run.sampleRate),
      meteredDevice(owners_->run.meteredDevice),
      errorMessage(owners_->errorMessage.text()),
      availableDevices(owners_->devices.available),
      currentInputVolumeScalar(owners_->gains.currentInputVolumeScalar),
      currentInputGain(owners_->gains.currentInputGain),
      deviceGains(owners_->gains.deviceGains) {
    meterChannel(UUID::main());
    const auto& saveFailure = environment.store.saveFailure();
    follow(saveFailure, this, [this, &saveFailure] {
        if (saveFailure()) {
            owners_->errorMessage.tell(*saveFailure());
        }
    });
    owners_->audio.setDevicesChangedHandler(
        [this] { owners_->mainThread.post([this] { followDevices(); }); });
}

MeterEngine::~MeterEngine() {
    owners_->audio.setDevicesChangedHandler(nullptr);
    stop();
}

const CalibrationProfile& MeterEngine::uncalibrated() {
    return CalibrationProfiles::uncalibrated();
}

const ChannelChanges& MeterEngine::channelChanges() const {
    return owners_->changes;
}

void MeterEngine::tellError(const std::string& sentence) {
    owners_->errorMessage.tell(sentence);
}

void MeterEngine::dismissError() {
    owners_->errorMessage.dismiss();
}

void MeterEngine::refreshDevices() {
    try {
        owners_->devices.refresh();
    } catch (const TarvaneKit::AudioIOError& error) {
        owners_->errorMessage.tell(error.what());
    }
    refreshInputVolume();
    refreshDeviceGains();
}

// Devices came or went by themselves. A list that can't be had now is no news to the user: what
// it means for a running source, that source tells.
void MeterEngine::followDevices() {
    try {
        owners_->devices.refresh();
    } catch (const TarvaneKit::AudioIOError&) {
    }
    refreshInputVolume();
    refreshDeviceGains();
}

// A channel that was removed has no record to switch off, but may still show an alert.
void MeterEngine::setRingOutEnabled(bool enabled, const UUID& id) {
    owners_->channels.setRingOutEnabled(enabled, id);
    if (!enabled && !channelInfo(id)) {
        owners_->run.clearRingAlerts(id);
    }
}

// What follows hands each operation to the owner of its subject.

void MeterEngine::start() {
    owners_->run.start();
}

void MeterEngine::stop() {
    owners_->run.stop();
}

void MeterEngine::pause() {
    owners_->run.pause();
}

void MeterEngine::resume() {
    owners_->run.resume();
}

const MeterChannel* MeterEngine::findMeterChannel(const UUID& id) const {
    return owners_->run.findMeterChannel(id);
}

const MeterChannel& MeterEngine::meterChannel(const UUID& id) {
    return owners_->run.meterChannel(id);
}

void MeterEngine::addDemand(ChannelDemand demand, const UUID& id) {
    owners_->run.demand.add(demand, id);
}

void MeterEngine::removeDemand(ChannelDemand demand, const UUID& id) {
    owners_->run.demand.remove(demand, id);
}

bool MeterEngine::isDemanded(ChannelDemand demand, const UUID& id) const {
    return owners_->run.demand.contains(demand, id);
}

void MeterEngine::resetMinMax() {
    owners_->run.resetMinMax();
}

void MeterEngine::resetMinMax(const UUID& id) {
    owners_->run.resetMinMax(id);
}

void MeterEngine::resetPeakHold() {
    owners_->run.resetPeakHold();
}

void MeterEngine::resetLoudness(const UUID& id) {
    owners_->run.resetLoudness(id);
}

std::string MeterEngine::deviceDisplayName(const std::optional<std::string>& uid) const {
    return owners_->devices.displayName(uid);
}

bool MeterEngine::isConnected(const std::optional<std::string>& uid) const {
    return owners_->devices.isConnected(uid);
}

std::optional<std::string> MeterEngine::mainInputInWords() const {
    return meteredDevice() ? meteredDevice() : owners_->devices.inWords(selectedDeviceUID());
}

int MeterEngine::channelCount(const std::optional<std::string>& forDeviceUID) const {
    return owners_->devices.channelCount(forDeviceUID);
}

bool MeterEngine::isLikelyDigitalSource(const std::optional<std::string>& uid) const {
    return owners_->devices.isLikelyDigitalSource(uid);
}

void MeterEngine::refreshInputVolume() {
    owners_->gains.refreshInputVolume();
}

void MeterEngine::refreshDeviceGains() {
    owners_->gains.refreshDeviceGains();
}

std::optional<InputGainState> MeterEngine::inputGain(const ChannelConfig& channel) const {
    return owners_->gains.inputGain(channel);
}

std::optional<std::string> MeterEngine::setInputGain(double gainDB, const ChannelConfig& channel) {
    return owners_->gains.setInputGain(gainDB, channel);
}

std::optional<std::string> MeterEngine::setInputGain(double gainDB) {
    return owners_->gains.setInputGain(gainDB);
}

std::optional<std::string> MeterEngine::setInputVolume(float volume) {
    return owners_->gains.setInputVolume(volume);
}

void MeterEngine::addChannel() {
    owners_->channels.addChannel();
}

void MeterEngine::removeChannel(const UUID& id) {
    owners_->channels.removeChannel(id);
}

void MeterEngine::updateChannel(const UUID& id, const std::function<void(ChannelConfig&)>& edit) {
    owners_->channels.updateChannel(id, edit);
}

void MeterEngine::setChannelDevice(const UUID& id, const std::optional<std::string>& uid) {
    owners_->channels.setChannelDevice(id, uid);
}

void MeterEngine::setChannelColor(const RGBAColor& color, const UUID& id) {
    owners_->channels.setChannelColor(color, id);
}

void MeterEngine::setMeasuresLoudness(bool measures, const UUID& id) {
    owners_->channels.setMeasuresLoudness(measures, id);
}

ChannelInfo MeterEngine::mainChannelInfo() const {
    return owners_->channels.mainChannelInfo();
}

ChannelInfo MeterEngine::info(const ChannelConfig& config) const {
    return owners_->channels.info(config);
}

std::vector<ChannelInfo> MeterEngine::channelInfos() const {
    return owners_->channels.channelInfos();
}

std::vector<ChannelInfo> MeterEngine::activeChannelInfos() const {
    return owners_->channels.activeChannelInfos();
}

std::optional<ChannelInfo> MeterEngine::channelInfo(const UUID& id) const {
    return owners_->channels.channelInfo(id);
}

UUID MeterEngine::resolvedChannelID(const UUID& id) const {
    return owners_->channels.resolvedChannelID(id);
}

std::string MeterEngine::inputDescription(const ChannelInfo& channel) const {
    return owners_->channels.inputDescription(channel);
}

ChannelDisplaySettings MeterEngine::display(const UUID& id) const {
    return owners_->displays.display(id);
}

void MeterEngine::updateDisplay(const UUID& id,
                                const std::function<void(ChannelDisplaySettings&)>& edit) {
    owners_->displays.updateDisplay(id, edit);
}

SPLMetric MeterEngine::displayedMetric(const UUID& id) const {
    return owners_->displays.displayedMetric(id);
}

SPLMetric MeterEngine::historyMetric(const UUID& id) const {
    return owners_->displays.historyMetric(id);
}

const std::vector<OctaveBand>& MeterEngine::bands(const UUID& id) const {
    return owners_->displays.bands(id);
}

RTAScale MeterEngine::rtaScale(const UUID& id) const {
    return owners_->displays.rtaScale(id);
}

bool MeterEngine::isCalibrated(const UUID& id) const {
    return owners_->displays.isCalibrated(id);
}

ReadoutUnit MeterEngine::readoutUnit(const UUID& id) const {
    return owners_->displays.readoutUnit(id);
}

std::string MeterEngine::levelUnitLabel(const UUID& id) const {
    return owners_->displays.levelUnitLabel(id);
}

double MeterEngine::splReadoutDisplayOffsetDB(const UUID& id) const {
    return owners_->displays.splReadoutDisplayOffsetDB(id);
}

ActiveTrafficLight MeterEngine::activeTrafficLight(const UUID& id) const {
    return owners_->displays.activeTrafficLight(id);
}

RGBAColor MeterEngine::trafficLightColor(double levelDB, const UUID& id) const {
    return owners_->displays.trafficLightColor(levelDB, id);
}

SpectrogramRange MeterEngine::spectrogramRange(const UUID& id) const {
    return owners_->displays.spectrogramRange(id);
}

SpectrogramRange MeterEngine::spectrogramColorMapRange(const UUID& id) const {
    return owners_->displays.spectrogramColorMapRange(id);
}

SpectrogramRange MeterEngine::spectrogramSliderBounds(const UUID& id) const {
    return owners_->displays.spectrogramSliderBounds(id);
}

void MeterEngine::setSpectrogramFloorDB(double floorDB, const UUID& id) {
    owners_->displays.setSpectrogramFloorDB(floorDB, id);
}

void MeterEngine::setSpectrogramCeilingDB(double ceilingDB, const UUID& id) {
    owners_->displays.setSpectrogramCeilingDB(ceilingDB, id);
}

std::optional<std::string> MeterEngine::calibrateReference(double knownSPL, const UUID& id) {
    return owners_->calibration.calibrateReference(knownSPL, id);
}

std::optional<std::string> MeterEngine::loadMicCalFile(const std::filesystem::path& path,
                                                       const UUID& id) {
    return owners_->calibration.loadMicCalFile(path, id);
}

std::optional<double> MeterEngine::uncalibratedLevelDBFS(const UUID& id) const {
    return owners_->calibration.uncalibratedLevelDBFS(id);
}

void MeterEngine::clearMicCalFile(const UUID& id) {
    owners_->calibration.clearMicCalFile(id);
}

void MeterEngine::clearReferenceCalibration(const UUID& id) {
    owners_->calibration.clearReferenceCalibration(id);
}

bool MeterEngine::isDigitalSource(const UUID& id) const {
    return owners_->calibration.isDigitalSource(id);
}

void MeterEngine::setDigitalSource(bool isDigital, const UUID& id) {
    owners_->calibration.setDigitalSource(isDigital, id);
}

SettingsSnapshot MeterEngine::captureSettings() const {
    return owners_->transfer.capture();
}

void MeterEngine::applySettings(const SettingsSnapshot& snapshot, bool includeAudioAndCalibration) {
    owners_->transfer.apply(snapshot, includeAudioAndCalibration);
}

void MeterEngine::applyLayoutPreset(LayoutPreset preset) {
    owners_->layout.applyLayoutPreset(preset);
}

bool MeterEngine::mainWindowShowsGraphArea() const {
    return owners_->layout.mainWindowShowsGraphArea();
}

ChannelWindowLayout MeterEngine::windowLayout(const UUID& channelID) const {
    return owners_->layout.windowLayout(channelID);
}

void MeterEngine::updateWindowLayout(const UUID& channelID,
                                     const std::function<void(ChannelWindowLayout&)>& edit) {
    owners_->layout.updateWindowLayout(channelID, edit);
}

void MeterEngine::resetWindowLayout(const UUID& channelID) {
    owners_->layout.resetWindowLayout(channelID);
}

}  // namespace TarvaneApp
