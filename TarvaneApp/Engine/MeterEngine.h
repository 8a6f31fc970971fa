// The model of the whole program as controls see it: its settings, its state to look at, and its
// operations.
//
// Made once at launch and living on the main thread to the end of the process. Behind this face
// each subject has an owner that alone changes its state:
//
//   MeterSettings       the settings, and SettingEffects what a change of one does
//   InputDevices        the devices
//   InputGains          their gains: read, set and followed
//   ChannelList         which channels there are, what feeds them, what they are called
//   ChannelDisplays     how a channel is shown
//   ChannelCalibration  from digital level to dB SPL
//   Run                 start, stop, loss, tick, publication; the channels' readings
//   ModuleLayout        where the modules are
//   SettingsTransfer    all settings at once, from and to a snapshot
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioInputDevice.h"
#include "DSP/OctaveBands.h"
#include "Engine/ActiveTrafficLight.h"
#include "Engine/ChannelChanges.h"
#include "Engine/ChannelDemand.h"
#include "Engine/LiveMeterData.h"
#include "Engine/MeterSettings.h"
#include "Metering/TransformSizes.h"
#include "Metrics/SPLMetric.h"
#include "Records/ChannelInfo.h"
#include "Records/DisplayEnums.h"
#include "Records/RTAScale.h"
#include "Settings/Observable.h"

namespace TarvaneKit {
class AudioSystem;
}

namespace TarvaneTests {
struct EngineInsides;
}

namespace TarvaneApp {

class Clock;
class MeterChannel;
class TickTimer;
struct SettingsSnapshot;  // its table of keys is the costliest of all to compile

class MeterEngine : public QObject, public MeterSettings {
    Q_OBJECT

    struct Owners;
    const std::unique_ptr<Owners> owners_;  // ahead of what shows their state

  public:
    using SpectrumViewMode = TarvaneApp::SpectrumViewMode;
    using MetricMode = TarvaneApp::MetricMode;
    using ReadoutUnit = TarvaneApp::ReadoutUnit;
    using ChannelDemand = TarvaneApp::ChannelDemand;
    using RTAScale = TarvaneApp::RTAScale;
    using ModulePlacement = TarvaneApp::ModulePlacement;
    using PanelLayout = TarvaneApp::PanelLayout;
    using GraphOrientation = TarvaneApp::GraphOrientation;
    using GraphOrder = TarvaneApp::GraphOrder;
    using LevelHistoryPosition = TarvaneApp::LevelHistoryPosition;
    using LevelHistoryZoom = TarvaneApp::LevelHistoryZoom;
    using LayoutPreset = TarvaneApp::LayoutPreset;

    static constexpr double ringAlertHoldSeconds = LiveMeterData::ringAlertHoldSeconds;
    static constexpr int spectrogramMaxHistoryRows = LiveMeterData::spectrogramMaxHistoryRows;
    static constexpr int fftSize = TransformSizes::spectrum;
    static constexpr int spectrogramFFTSize = TransformSizes::spectrogram;

    /// What the engine stands on. All of it outlives the engine.
    struct Environment {
        TarvaneKit::AudioSystem& audio;
        KeyValueStore& store;
        const Clock& clock;
        TickTimer& tickTimer;
    };

    /// Loads the settings; metering doesn't start by itself.
    explicit MeterEngine(const Environment& environment, QObject* parent = nullptr);
    /// Shuts every source. Waits for a start that is under way.
    ~MeterEngine() override;

    /// The profile of every channel that carries no acoustic level or was never calibrated.
    static const TarvaneKit::CalibrationProfile& uncalibrated();

    /// Sent whenever something about a channel, or how it is shown, is another.
    const ChannelChanges& channelChanges() const;

    // The state of the run.
    const Observable<bool>& isRunning;
    const Observable<bool>& isStarting;
    const Observable<bool>& isPaused;
    const Observable<bool>& microphonePermissionDenied;
    /// A channel's device or input was changed since the start: offer a restart.
    const Observable<bool>& channelSourcesChangedWhileRunning;
    /// The main channel's rate in Hz; 48000 until the first start.
    const Observable<double>& sampleRate;
    /// What the main input is fed from, in words, as "UMIK-2 (default)"; absent while nothing runs.
    const Observable<std::optional<std::string>>& meteredDevice;
    /// A finished sentence for the user; dismissing it makes it absent.
    const Observable<std::optional<std::string>>& errorMessage;

    // The devices and their controls, followed while the devices are there.
    const Observable<std::vector<TarvaneKit::AudioInputDevice>>& availableDevices;
    /// The main input's volume, 0 to 1.
    const Observable<std::optional<float>>& currentInputVolumeScalar;
    const Observable<std::optional<TarvaneKit::InputGainState>>& currentInputGain;
    /// The extra channels' gains, by the device's uid (empty for the default input), "#" and the
    /// input's number.
    const Observable<std::map<std::string, TarvaneKit::InputGainState>>& deviceGains;

    // The run.
    void start();
    void stop();
    void pause();
    void resume();
    void dismissError();
    /// For whoever works with the engine: the sentence waits for its turn in `errorMessage`.
    void tellError(const std::string& sentence);

    // Readings.
    /// Made at first use, so that a view may bind to a channel before it has ever run.
    const MeterChannel& meterChannel(const TarvaneKit::UUID& id);
    /// The same for whoever only looks: null where nobody has used it.
    const MeterChannel* findMeterChannel(const TarvaneKit::UUID& id) const;
    /// One more display shows this of the channel, or one less. Not touched by start and stop.
    void addDemand(ChannelDemand demand, const TarvaneKit::UUID& id);
    void removeDemand(ChannelDemand demand, const TarvaneKit::UUID& id);
    bool isDemanded(ChannelDemand demand, const TarvaneKit::UUID& id) const;
    /// Clears min, max, the peak detectors and the clip latch of every channel.
    void resetMinMax();
    /// The same of one channel.
    void resetMinMax(const TarvaneKit::UUID& id);
    /// Starts the held peaks of every spectrum over.
    void resetPeakHold();
    /// Starts integrated loudness, range and maxima over, and min and max.
    void resetLoudness(const TarvaneKit::UUID& id);

    // The devices.
    /// Reads the list of devices and their gains anew. When that fails the last good list stays.
    void refreshDevices();
    std::string deviceDisplayName(const std::optional<std::string>& uid) const;
    /// Whether there is what the uid stands for; an absent uid is the default input.
    bool isConnected(const std::optional<std::string>& uid) const;
    /// `meteredDevice`, and while nothing runs the same of what a start would open; absent where
    /// there is nothing to open.
    std::optional<std::string> mainInputInWords() const;
    /// Inputs of the device; for an absent or unknown uid those of the default input, at least 1.
    int channelCount(const std::optional<std::string>& forDeviceUID) const;
    /// Whether the device is a network feed, a loopback or the like, that starts out as digital.
    bool isLikelyDigitalSource(const std::optional<std::string>& uid) const;

    // Their gains.
    void refreshInputVolume();
    void refreshDeviceGains();
    /// Absent where the channel's device reports none.
    std::optional<TarvaneKit::InputGainState> inputGain(const ChannelConfig& channel) const;
    /// On both inputs of a pair. A device that doesn't take it is told in `errorMessage`, and what
    /// that says is given back.
    std::optional<std::string> setInputGain(double gainDB, const ChannelConfig& channel);
    /// The same for the main input.
    std::optional<std::string> setInputGain(double gainDB);
    std::optional<std::string> setInputVolume(float volume);

    // The channels.
    /// A channel on the main input's device, at its lowest input that no other channel takes. One
    /// too many is told in `errorMessage` and not added.
    void addChannel();
    /// Its readings stay as they are for whoever still shows them.
    void removeChannel(const TarvaneKit::UUID& id);
    /// Edits an extra channel's record; an unknown id does nothing.
    void updateChannel(const TarvaneKit::UUID& id, const std::function<void(ChannelConfig&)>& edit);
    /// Moves an extra channel, with its inputs kept where the device has them.
    void setChannelDevice(const TarvaneKit::UUID& id, const std::optional<std::string>& uid);
    void setChannelColor(const TarvaneKit::RGBAColor& color, const TarvaneKit::UUID& id);
    void setMeasuresLoudness(bool measures, const TarvaneKit::UUID& id);
    void setRingOutEnabled(bool enabled, const TarvaneKit::UUID& id);
    ChannelInfo mainChannelInfo() const;
    ChannelInfo info(const ChannelConfig& config) const;
    /// The main input first, then every extra channel.
    std::vector<ChannelInfo> channelInfos() const;
    /// The main input first, then the extra channels that are enabled.
    std::vector<ChannelInfo> activeChannelInfos() const;
    std::optional<ChannelInfo> channelInfo(const TarvaneKit::UUID& id) const;
    /// The id, or the main input's when there is no such channel any more.
    TarvaneKit::UUID resolvedChannelID(const TarvaneKit::UUID& id) const;
    /// A channel's device and inputs in words, as "Mic Interface (inputs 3+4, stereo)".
    std::string inputDescription(const ChannelInfo& channel) const;

    // How a channel is shown.
    /// The channel's own display settings, or the main input's where it follows them.
    ChannelDisplaySettings display(const TarvaneKit::UUID& id) const;
    void updateDisplay(const TarvaneKit::UUID& id,
                       const std::function<void(ChannelDisplaySettings&)>& edit);
    TarvaneKit::SPLMetric displayedMetric(const TarvaneKit::UUID& id) const;
    /// What the channel's level history shows.
    TarvaneKit::SPLMetric historyMetric(const TarvaneKit::UUID& id) const;
    /// The bands of the channel's spectrum.
    const std::vector<TarvaneKit::OctaveBand>& bands(const TarvaneKit::UUID& id) const;
    /// dB SPL for a calibrated channel, unless it is set to show dBFS.
    RTAScale rtaScale(const TarvaneKit::UUID& id) const;
    bool isCalibrated(const TarvaneKit::UUID& id) const;
    ReadoutUnit readoutUnit(const TarvaneKit::UUID& id) const;
    /// "LUFS" for a channel that measures loudness, "dB" for a calibrated one in SPL, else "dBFS".
    std::string levelUnitLabel(const TarvaneKit::UUID& id) const;
    /// What is to be taken off a level in the channel's calibrated scale to show it in its unit.
    double splReadoutDisplayOffsetDB(const TarvaneKit::UUID& id) const;
    ActiveTrafficLight activeTrafficLight(const TarvaneKit::UUID& id) const;
    TarvaneKit::RGBAColor trafficLightColor(double levelDB, const TarvaneKit::UUID& id) const;
    /// In the unit that the channel is shown in.
    SpectrogramRange spectrogramRange(const TarvaneKit::UUID& id) const;
    /// The same in the unit of the spectrogram's rows.
    SpectrogramRange spectrogramColorMapRange(const TarvaneKit::UUID& id) const;
    /// How far floor and ceiling can be moved.
    SpectrogramRange spectrogramSliderBounds(const TarvaneKit::UUID& id) const;
    /// Each stays 3 dB clear of the other.
    void setSpectrogramFloorDB(double floorDB, const TarvaneKit::UUID& id);
    void setSpectrogramCeilingDB(double ceilingDB, const TarvaneKit::UUID& id);

    // Calibration.
    // What stands in the way of the first two is told in `errorMessage` and given back, and nothing
    // changes.

    /// Takes the channel's level as that of a tone of known SPL.
    std::optional<std::string> calibrateReference(double knownSPL, const TarvaneKit::UUID& id);
    /// Takes a microphone file.
    std::optional<std::string> loadMicCalFile(const std::filesystem::path& path,
                                              const TarvaneKit::UUID& id);
    /// The level that `calibrateReference` would take, without the calibration in force; absent
    /// without a live signal.
    std::optional<double> uncalibratedLevelDBFS(const TarvaneKit::UUID& id) const;
    /// Whether there is a live signal to calibrate on.
    bool canCalibrate(const TarvaneKit::UUID& id) const {
        return uncalibratedLevelDBFS(id).has_value();
    }
    void clearMicCalFile(const TarvaneKit::UUID& id);
    void clearReferenceCalibration(const TarvaneKit::UUID& id);
    /// Whether the channel's source has no acoustic level. The system's output never has.
    bool isDigitalSource(const TarvaneKit::UUID& id) const;
    void setDigitalSource(bool isDigital, const TarvaneKit::UUID& id);

    // The whole setup.
    SettingsSnapshot captureSettings() const;
    /// Assigns what the snapshot says; what it doesn't mention stays. Without audio and calibration
    /// every channel keeps its input and its profile, and no channel comes or goes. A run, or a
    /// start under way, goes on with the inputs that then hold.
    void applySettings(const SettingsSnapshot& snapshot, bool includeAudioAndCalibration);

    // The layout.
    void applyLayoutPreset(LayoutPreset preset);
    bool mainWindowShowsGraphArea() const;
    /// The channel's own layout, or one with all modules and the main window's arrangement.
    ChannelWindowLayout windowLayout(const TarvaneKit::UUID& channelID) const;
    /// An edit that would leave the window without a module changes nothing.
    void updateWindowLayout(const TarvaneKit::UUID& channelID,
                            const std::function<void(ChannelWindowLayout&)>& edit);
    /// Takes the layout out of `channelWindowLayouts`, so that the default holds again.
    void resetWindowLayout(const TarvaneKit::UUID& channelID);

  private:
    friend struct TarvaneTests::EngineInsides;

    void followDevices();
};

}  // namespace TarvaneApp
