// The model of the whole program: it owns the channels and everything that measures.
//
// Made once at launch and living on the main thread to the end of the process. Every control
// reads and writes one of its fields or calls one of its operations. Its operations stand in
// one source per subject:
//
//   MeterEngine+Settings         the types that its settings store
//   MeterEngine+SettingEffects   what a change of a setting does beyond saving it
//   MeterEngine+RunControl       start, pause, resume, stop; opening and losing sources
//   MeterEngine+Tick             the display tick, the publication of its results, demand
//   MeterEngine+Channels         which channels there are, what feeds them, what they are called
//   MeterEngine+SpectrogramRange  the levels of a spectrogram's colours
//   MeterEngine+Display          what a channel shows, its min and max, its Leq
//   MeterEngine+Calibration      from digital level to dB SPL: by tone, by file, or not at all
//   MeterEngine+InputGain        the devices' gains: read, set and followed
//   MeterEngine+Layout           where the modules are
//
// Work leaves the main thread twice, for opening sources (`startQueue_`) and for a tick's
// analysis (`analysisQueue_`), always with values alone, and comes back through the event loop
// carrying the generation it began with; what comes back late is let go of.
#pragma once

#include <QObject>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/AudioSystem.h"
#include "Calibration/CalibrationProfile.h"
#include "Core/SerialQueue.h"
#include "Core/UUID.h"
#include "DSP/OctaveBands.h"
#include "Engine/ChannelDemand.h"
#include "Engine/Clock.h"
#include "Engine/MainThreadQueue.h"
#include "Engine/MeterChannel.h"
#include "Engine/TickTimer.h"
#include "Metering/AnalysisSettings.h"
#include "Metering/CaptureGroup.h"
#include "Metering/ParallelLoop.h"
#include "Metering/StartPlan.h"
#include "Metrics/LoudnessMetric.h"
#include "Metrics/SPLMetric.h"
#include "Metrics/TrafficLightConfig.h"
#include "Records/ChannelColors.h"
#include "Records/ChannelConfig.h"
#include "Records/ChannelDisplaySettings.h"
#include "Records/ChannelInfo.h"
#include "Records/ChannelWindowLayout.h"
#include "Records/DisplayEnums.h"
#include "Records/LayoutEnums.h"
#include "Records/LevelHistoryZoom.h"
#include "Records/LoudnessTarget.h"
#include "Records/RTAScale.h"
#include "Records/SpectrogramColorStop.h"
#include "Records/SpectrogramRanges.h"
#include "Settings/Setting.h"

namespace TarvaneApp {

class MeterEngine : public QObject {
    Q_OBJECT
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

    static constexpr double ringAlertHoldSeconds = 3.0;
    /// Two minutes at 60 rows a second.
    static constexpr int spectrogramMaxHistoryRows = 7200;
    static constexpr int fftSize = ChannelAnalysis::fftSize;
    static constexpr int spectrogramFFTSize = ChannelAnalysis::spectrogramFFTSize;

    /// What the engine stands on. All of it outlives the engine.
    struct Environment {
        TarvaneKit::AudioSystem& audio;
        KeyValueStore& store;
        const Clock& clock;
        TickTimer& displayTimer;
    };

    /// Loads the settings; metering doesn't start by itself.
    explicit MeterEngine(const Environment& environment, QObject* parent = nullptr);
    /// Shuts every source. Waits for a start that is under way.
    ~MeterEngine() override;

    /// The profile of every channel that carries no acoustic level or was never calibrated.
    static const TarvaneKit::CalibrationProfile& uncalibrated();

  private:
    SettingsRegistry settings_;  // ahead of the settings, which enter themselves

  public:
    // The settings: type, key, default. Their effects: MeterEngine+SettingEffects.cpp.
    using Key = Persistence::Key;

    // The main input.
    Setting<std::optional<std::string>> selectedDeviceUID{settings_, Key::deviceUID, std::nullopt};
    Setting<int> selectedChannelIndex{settings_, Key::channelIndex, 0};
    Setting<bool> mainInputIsStereo{settings_, Key::mainInputIsStereo, false};
    Setting<int> mainInputRightChannelIndex{settings_, Key::mainInputRightChannelIndex, 1};
    Setting<bool> mainInputIsDigital{settings_, Key::mainInputIsDigital, false};
    Setting<bool> mainInputMeasuresLoudness{settings_, Key::mainInputMeasuresLoudness, false};

    // Loudness.
    Setting<TarvaneKit::LoudnessMetric> loudnessReadout{settings_, Key::loudnessReadout,
                                                        TarvaneKit::LoudnessMetric::shortTerm};
    Setting<LoudnessTarget> loudnessTarget{settings_, Key::loudnessTarget,
                                           LoudnessTarget::presets().front()};
    Setting<LoudnessColors> loudnessColors{settings_, Key::loudnessColors, {}};

    // The other channels, and which channel a module shows.
    Setting<std::vector<ChannelConfig>> extraChannels{settings_, Key::extraChannels, {}};
    Setting<TarvaneKit::UUID> splMeterChannelID{settings_, Key::splMeterChannelID,
                                                TarvaneKit::UUID::main()};
    Setting<TarvaneKit::UUID> rtaChannelID{settings_, Key::rtaChannelID, TarvaneKit::UUID::main()};
    Setting<TarvaneKit::UUID> spectrogramChannelID{settings_, Key::spectrogramChannelID,
                                                   TarvaneKit::UUID::main()};
    Setting<std::optional<TarvaneKit::UUID>> levelHistoryChannelID{
        settings_, Key::levelHistoryChannelID, std::nullopt};
    Setting<std::vector<TarvaneKit::UUID>> levelHistoryOverlayChannelIDs{
        settings_, Key::levelHistoryOverlayChannelIDs, {}};
    Setting<std::map<TarvaneKit::UUID, ChannelWindowLayout>> channelWindowLayouts{
        settings_, Key::channelWindowLayouts, {}};
    Setting<std::vector<TarvaneKit::UUID>> rtaOverlayChannelIDs{
        settings_, Key::rtaOverlayChannelIDs, {}};

    // The main input's spectrum.
    Setting<TarvaneKit::OctaveFraction> octaveFraction{settings_, Key::octaveFraction,
                                                       TarvaneKit::OctaveFraction::thirdOctave};
    Setting<SpectrumViewMode> viewMode{settings_, Key::viewMode, SpectrumViewMode::both};
    Setting<bool> octaveNormalizedSpectrumDisplay{settings_, Key::octaveNormalizedSpectrumDisplay,
                                                  true};
    Setting<TarvaneKit::RGBAColor> rtaColor{settings_, Key::rtaColor, mainChannelColor};
    Setting<TarvaneKit::RGBAColor> rtaPeakColor{settings_, Key::rtaPeakColor, {1.0, 0.6, 0.2, 1.0}};
    Setting<bool> showPeakHold{settings_, Key::showPeakHold, true};
    Setting<TarvaneKit::TimeWeighting> rtaTimeWeighting{settings_, Key::rtaTimeWeighting,
                                                        TarvaneKit::TimeWeighting::none};
    /// Absent is not stored: no curve chosen, the default comes back at the next launch.
    Setting<std::optional<std::string>> selectedTargetCurveName{
        settings_, Key::targetCurveName, TarvaneKit::BuiltInCurves::xCurve().name};
    Setting<double> targetCurveReferenceDB{settings_, Key::targetCurveReferenceDB, 85.0};
    Setting<double> targetCurveReferenceDBFS{settings_, Key::targetCurveReferenceDBFS, -20.0};

    // The main input's meter.
    Setting<MetricMode> metricMode{settings_, Key::metricMode, MetricMode::spl};
    Setting<TarvaneKit::Weighting> splWeighting{settings_, Key::splWeighting,
                                                TarvaneKit::Weighting::a};
    Setting<TarvaneKit::TimeWeighting> splTimeWeighting{settings_, Key::splTimeWeighting,
                                                        TarvaneKit::TimeWeighting::fast};
    Setting<TarvaneKit::Weighting> peakWeighting{settings_, Key::peakWeighting,
                                                 TarvaneKit::Weighting::c};
    Setting<TarvaneKit::Weighting> leqWeighting{settings_, Key::leqWeighting,
                                                TarvaneKit::Weighting::a};
    Setting<double> leqIntegrationSeconds{settings_, Key::leqIntegrationSeconds, 60.0};
    Setting<TarvaneKit::TrafficLightConfig> trafficLightConfig{
        settings_, Key::trafficLightConfig, TarvaneKit::TrafficLightConfig::defaultSPL()};
    Setting<TarvaneKit::TrafficLightConfig> trafficLightConfigDBFS{
        settings_, Key::trafficLightConfigDBFS, TarvaneKit::TrafficLightConfig::defaultDBFS()};
    Setting<TarvaneKit::CalibrationProfile> calibration{settings_, Key::calibration, {}};

    // Spectrograms.
    Setting<SpectrogramRanges> spectrogramRanges{settings_, Key::spectrogramRanges, {}};
    Setting<double> spectrogramTimeSpanSeconds{settings_, Key::spectrogramTimeSpanSeconds, 2.0};
    Setting<double> spectrogramSliceHeightMultiplier{settings_,
                                                     Key::spectrogramSliceHeightMultiplier, 1.0};
    Setting<std::vector<SpectrogramColorStop>> spectrogramColorStops{
        settings_, Key::spectrogramColorStops, defaultSpectrogramColorStops()};
    Setting<std::vector<SpectrogramColorPreset>> spectrogramColorPresets{
        settings_, Key::spectrogramColorPresets, {}};

    // The layout of the main window.
    Setting<PanelLayout> panelLayout{settings_, Key::panelLayout, PanelLayout::both};
    /// The spectrum's share of the graph area, 0.15 to 0.85.
    Setting<double> panelSplitFraction{settings_, Key::panelSplitFraction, 0.5};
    Setting<ModulePlacement> splMeterPlacement{settings_, Key::splMeterPlacement,
                                               ModulePlacement::mainWindow};
    Setting<ModulePlacement> rtaPlacement{settings_, Key::rtaPlacement,
                                          ModulePlacement::mainWindow};
    Setting<ModulePlacement> spectrogramPlacement{settings_, Key::spectrogramPlacement,
                                                  ModulePlacement::mainWindow};
    Setting<ModulePlacement> levelHistoryPlacement{settings_, Key::levelHistoryPlacement,
                                                   ModulePlacement::mainWindow};
    Setting<GraphOrientation> graphOrientation{settings_, Key::graphOrientation,
                                               GraphOrientation::stacked};
    Setting<GraphOrder> graphOrder{settings_, Key::graphOrder, GraphOrder::rtaFirst};
    Setting<LevelHistoryPosition> levelHistoryPosition{settings_, Key::levelHistoryPosition,
                                                       LevelHistoryPosition::aboveGraphs};

    // Readouts and the level history.
    Setting<bool> splReadoutShowsDBFS{settings_, Key::splReadoutShowsDBFS, false};
    Setting<bool> splReadoutShowsClock{settings_, Key::splReadoutShowsClock, false};
    Setting<bool> splMeterShowsLevelBar{settings_, Key::splMeterShowsLevelBar, true};
    Setting<LevelHistoryZoom> levelHistoryZoom{settings_, Key::levelHistoryZoom,
                                               LevelHistoryZoom::session};
    Setting<bool> levelHistoryShowsMomentary{settings_, Key::levelHistoryShowsMomentary, false};

    // The main input's feedback alerts.
    Setting<bool> ringOutEnabled{settings_, Key::ringOutEnabled, true};
    Setting<TarvaneKit::RingOutSensitivity> ringOutSensitivity{
        settings_, Key::ringOutSensitivity, TarvaneKit::RingOutSensitivity::normal};

    // The state of the run.
    Published<bool> isRunning{false};
    Published<bool> isStarting{false};
    Published<bool> isPaused{false};
    Published<std::vector<TarvaneKit::AudioInputDevice>> availableDevices;
    /// A finished sentence for the user; dismissing it makes it absent.
    Published<std::optional<std::string>> errorMessage;
    Published<bool> microphonePermissionDenied{false};
    /// A channel's device or input was changed since the start: offer a restart.
    Published<bool> channelSourcesChangedWhileRunning{false};
    /// The main channel's rate in Hz; 48000 until the first start.
    Published<double> sampleRate{48000.0};

    // The devices' controls, followed while the devices are there.
    /// The main input's volume, 0 to 1.
    Published<std::optional<float>> currentInputVolumeScalar;
    Published<std::optional<TarvaneKit::InputGainState>> currentInputGain;
    /// The extra channels' gains, by the device's uid (empty for the default input), "#" and the
    /// input's number.
    Published<std::map<std::string, TarvaneKit::InputGainState>> deviceGains;

    // MeterEngine+RunControl
    void start();
    void stop();
    void pause();
    void resume();

    // MeterEngine+Tick
    /// One more display shows this of the channel, or one less. Not touched by start and stop.
    void addDemand(ChannelDemand demand, const TarvaneKit::UUID& id);
    void removeDemand(ChannelDemand demand, const TarvaneKit::UUID& id);
    bool isDemanded(ChannelDemand demand, const TarvaneKit::UUID& id) const;

    // MeterEngine+Channels
    /// Reads the list of devices and their gains anew. When that fails the last good list stays.
    void refreshDevices();
    /// A channel on the main input's device, at its lowest input that no other channel takes.
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
    /// Made at first use, so that a view may bind to a channel before it has ever run.
    MeterChannel& meterChannel(const TarvaneKit::UUID& id);
    /// The id, or the main input's when there is no such channel any more.
    TarvaneKit::UUID resolvedChannelID(const TarvaneKit::UUID& id) const;
    std::string deviceDisplayName(const std::optional<std::string>& uid) const;
    /// Inputs of the device; for an absent or unknown uid those of the default input, at least 1.
    int channelCount(const std::optional<std::string>& forDeviceUID) const;
    /// A channel's device and inputs in words, as "Mic Interface (inputs 3+4, stereo)".
    std::string inputDescription(const ChannelInfo& channel) const;

    // MeterEngine+Display
    /// The channel's own display settings, or the main input's where it follows them.
    ChannelDisplaySettings display(const TarvaneKit::UUID& id) const;
    void updateDisplay(const TarvaneKit::UUID& id,
                       const std::function<void(ChannelDisplaySettings&)>& edit);
    TarvaneKit::SPLMetric displayedMetric(const TarvaneKit::UUID& id) const;
    /// What the channel's level history shows.
    TarvaneKit::SPLMetric historyMetric(const TarvaneKit::UUID& id) const;
    /// The bands of the channel's spectrum.
    const std::vector<TarvaneKit::OctaveBand>& bands(const TarvaneKit::UUID& id);
    /// dB SPL for a calibrated channel, unless it is set to show dBFS.
    RTAScale rtaScale(const TarvaneKit::UUID& id) const;
    bool isCalibrated(const TarvaneKit::UUID& id) const;
    ReadoutUnit readoutUnit(const TarvaneKit::UUID& id) const;
    /// "LUFS" for a channel that measures loudness, "dB" for a calibrated one in SPL, else "dBFS".
    std::string levelUnitLabel(const TarvaneKit::UUID& id) const;
    /// What is to be taken off a level in the channel's calibrated scale to show it in its unit.
    double splReadoutDisplayOffsetDB(const TarvaneKit::UUID& id) const;
    struct ActiveTrafficLight {
        TarvaneKit::TrafficLightConfig config;
        double offsetDB = 0.0;  ///< taken off a calibrated level to reach the table's scale
    };
    ActiveTrafficLight activeTrafficLight(const TarvaneKit::UUID& id) const;
    TarvaneKit::RGBAColor trafficLightColor(double levelDB, const TarvaneKit::UUID& id) const;
    /// Clears min, max, the peak detectors and the clip latch of every channel.
    void resetMinMax();
    /// The same of one channel.
    void resetMinMax(const TarvaneKit::UUID& id);
    /// Starts the user's Leq over on every channel.
    void configureLeq(TarvaneKit::Weighting weighting, double integrationSeconds);

    // MeterEngine+SpectrogramRange
    /// In the unit that the channel is shown in.
    SpectrogramRange spectrogramRange(const TarvaneKit::UUID& id) const;
    /// The same in the unit of the spectrogram's rows.
    SpectrogramRange spectrogramColorMapRange(const TarvaneKit::UUID& id) const;
    /// How far floor and ceiling can be moved.
    SpectrogramRange spectrogramSliderBounds(const TarvaneKit::UUID& id) const;
    /// Each stays 3 dB clear of the other.
    void setSpectrogramFloorDB(double floorDB, const TarvaneKit::UUID& id);
    void setSpectrogramCeilingDB(double ceilingDB, const TarvaneKit::UUID& id);
    /// Starts the held peaks of every spectrum over.
    void resetPeakHold();
    /// Starts integrated loudness, range and maxima over, and min and max.
    void resetLoudness(const TarvaneKit::UUID& id);

    // MeterEngine+Calibration
    /// Takes the channel's level as that of a tone of known SPL. What stands in the way is told in
    /// `errorMessage`, and nothing changes.
    void calibrateReference(double knownSPL, const TarvaneKit::UUID& id);
    /// Takes a microphone file; one that can't be read is told, and nothing changes.
    void loadMicCalFile(const std::filesystem::path& path, const TarvaneKit::UUID& id);
    void clearMicCalFile(const TarvaneKit::UUID& id);
    void clearReferenceCalibration(const TarvaneKit::UUID& id);
    /// Whether the channel's source has no acoustic level. The system's output never has.
    bool isDigitalSource(const TarvaneKit::UUID& id) const;
    void setDigitalSource(bool isDigital, const TarvaneKit::UUID& id);
    /// Whether the device is a network feed, a loopback or the like, that starts out as digital.
    bool isLikelyDigitalSource(const std::optional<std::string>& uid) const;

    // MeterEngine+InputGain
    void refreshInputVolume();
    void refreshDeviceGains();
    /// Absent where the channel's device reports none.
    std::optional<TarvaneKit::InputGainState> inputGain(const ChannelConfig& channel) const;
    /// On both inputs of a pair. A device that doesn't take it is told in `errorMessage`.
    void setInputGain(double gainDB, const ChannelConfig& channel);
    /// The same for the main input.
    void setInputGain(double gainDB);
    void setInputVolume(float volume);

    // MeterEngine+Layout
    void applyLayoutPreset(LayoutPreset preset);
    bool mainWindowShowsGraphArea() const;
    /// The channel's own layout, or one with all modules and the main window's arrangement.
    ChannelWindowLayout windowLayout(const TarvaneKit::UUID& channelID) const;
    void updateWindowLayout(const TarvaneKit::UUID& channelID,
                            const std::function<void(ChannelWindowLayout&)>& edit);
    /// Takes the layout out of `channelWindowLayouts`, so that the default holds again.
    void resetWindowLayout(const TarvaneKit::UUID& channelID);

  private:
    // MeterEngine+SpectrogramRange
    void editSpectrogramRange(const TarvaneKit::UUID& id,
                              const std::function<void(SpectrogramRange&)>& edit);

    // MeterEngine+Channels
    void followDevices();
    /// Null for the main input and for an unknown channel.
    const ChannelConfig* extraChannel(const TarvaneKit::UUID& id) const;
    int lowestFreeInput(const std::optional<std::string>& deviceUID, int inputs) const;

    // MeterEngine+SettingEffects
    void attachSettingEffects();
    void selectedDeviceChanged(const std::optional<std::string>& old);
    void extraChannelsChanged(const std::vector<ChannelConfig>& old);
    void mainInputsChanged(bool changed);
    void noteSourceChange(bool changed);
    void loudnessChannelsChanged();
    void placementChanged();

    // MeterEngine+RunControl
    void startAuthorized();
    void microphoneRefused();
    void startReturned(int generation, const std::vector<ChannelInfo>& infos,
                       const std::vector<StartPlan>& plans, std::vector<StartResult> results);
    void finishStart(const std::vector<ChannelInfo>& infos, const std::vector<StartPlan>& plans,
                     std::vector<StartResult> results, const std::vector<std::string>& failures);
    void sourceLost(const std::shared_ptr<CaptureGroup>& group);
    void closeGroup(const std::shared_ptr<CaptureGroup>& group);
    void startDisplayTimer();
    template <class Action>
    void forEachProcessor(Action action);

    // MeterEngine+Tick
    void tick();
    void analysisReturned(int generation, const std::vector<MeterChannel*>& channels,
                          std::vector<ChannelFrame>& frames);
    void publish(ChannelFrame& frame, MeterChannel& channel, TarvaneKit::Date now);
    void publishRingAlert(const std::optional<TarvaneKit::RingAlert>& alert, MeterChannel& channel,
                          TarvaneKit::Date now);
    static void publishSpectrogram(std::vector<std::vector<float>>& rows, LiveMeterData& live);
    void publishLevels(MeterChannel& channel);
    static void recordLevels(MeterChannel& channel, TarvaneKit::Date now);
    static void updateClipState(MeterChannel& channel, bool clippedThisTick, TarvaneKit::Date now);
    static void updateInputMeter(MeterChannel& channel, float peak, TarvaneKit::Date now);

    // MeterEngine+Display
    /// What the publication of every channel asks for; without a copy of its record.
    struct LevelScale {
        bool isCalibrated = false;
        double offsetDB = 0.0;  ///< from a raw level to the channel's
    };
    /// Empty for an unknown channel.
    std::optional<LevelScale> levelScale(const TarvaneKit::UUID& id) const;
    bool measuresLoudness(const TarvaneKit::UUID& id) const;
    ChannelDisplaySettings mainDisplay() const;
    /// The level, peak or Leq that the channel's meter is set to.
    TarvaneKit::SPLMetric meterMetric(const TarvaneKit::UUID& id) const;
    void pinChannelsFollowingMain(const ChannelDisplaySettings& to);
    void resetMinMax(MeterChannel& channel);
    void metricChanged(MeterChannel& channel);
    void mainMetricChanged();
    void resetBandLevels(const TarvaneKit::UUID& id);
    void clearRingAlerts(const TarvaneKit::UUID& id);

    // MeterEngine+Calibration
    static TarvaneKit::CalibrationProfile sanitizedCalibration(
        TarvaneKit::CalibrationProfile profile);
    void calibrationChanged();
    /// Edits the channel's profile, and makes one first for an extra channel that has none.
    void editCalibration(const TarvaneKit::UUID& id,
                         const std::function<void(TarvaneKit::CalibrationProfile&)>& edit);
    bool hasProfile(const TarvaneKit::UUID& id) const;

    // MeterEngine+InputGain
    std::optional<std::uint32_t> deviceID(const std::optional<std::string>& uid) const;
    std::vector<int> mainGainChannels() const;
    void setCurrentInputGain(const std::optional<TarvaneKit::InputGainState>& gain);

    TarvaneKit::AudioSystem& audio_;
    const Clock& clock_;
    TickTimer& displayTimer_;

    std::map<TarvaneKit::UUID, std::unique_ptr<MeterChannel>> meterChannels_;
    /// Bands per fraction, filled at first need.
    std::map<TarvaneKit::OctaveFraction, std::vector<TarvaneKit::OctaveBand>> bandCache_;
    bool isApplyingLayoutPreset_ = false;
    std::vector<std::shared_ptr<CaptureGroup>> captureGroups_;
    int startGeneration_ = 0;  // raised by every start and by a stop during one
    int runGeneration_ = 0;    // raised when a run begins and when it ends

    ChannelDemandCounts demandCounts_;
    bool analysisInFlight_ = false;
    int smoothingGeneration_ = 0;
    int peakHoldGeneration_ = 0;
    int timingGeneration_ = 0;
    int calibrationGeneration_ = 0;

    // Last, so that their work ends before anything it could reach is gone.
    MainThreadQueue mainThread_;
    ParallelLoop analysisLoop_;
    TarvaneKit::SerialQueue analysisQueue_{"org.brenlow.tarvane.analysis"};
    TarvaneKit::SerialQueue startQueue_{"org.brenlow.tarvane.start"};

    // The listeners to the devices' controls; after the queue to the main thread that they post to.
    struct GainObservation {
        std::uint32_t deviceID = 0;
        std::vector<int> channels;
        std::unique_ptr<TarvaneKit::InputVolumeObservation> observation;
    };
    std::optional<GainObservation> inputVolumeObservation_;  // the main input's
    std::vector<GainObservation> deviceGainObservations_;    // the extra channels', one per device
};

}  // namespace TarvaneApp
