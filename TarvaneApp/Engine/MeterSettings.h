// The settings of the whole program: type, stored key, default. What a change does beyond saving it
// stands in SettingEffects.
//
// `MeterEngine` is one of these, so that a control that only reads or writes settings takes this
// and knows no engine. Main thread only.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Calibration/CalibrationProfile.h"
#include "Core/RGBAColor.h"
#include "Core/UUID.h"
#include "Engine/DisplaySetting.h"
#include "Metrics/LoudnessMetric.h"
#include "Metrics/TrafficLightConfig.h"
#include "Records/ChannelColors.h"
#include "Records/ChannelConfig.h"
#include "Records/ChannelDisplaySettings.h"
#include "Records/ChannelWindowLayout.h"
#include "Records/LayoutEnums.h"
#include "Records/LevelHistoryZoom.h"
#include "Records/LoudnessTarget.h"
#include "Records/SpectrogramColorStop.h"
#include "Records/SpectrogramRanges.h"
#include "Settings/Setting.h"

namespace TarvaneApp {

class MeterSettings {
  public:
    /// Loads them.
    explicit MeterSettings(KeyValueStore& store);
    MeterSettings(const MeterSettings&) = delete;
    MeterSettings& operator=(const MeterSettings&) = delete;

  private:
    void constrainStoredValues();

    // Ahead of the settings, which enter themselves.
    SettingsRegistry channels_;  // what a display of a channel may depend on
    SettingsRegistry windows_;   // which channel a module shows, and where the modules are
    DisplaySettings display_{channels_, {}};

  public:
    // The main input.
    Setting<std::optional<std::string>> selectedDeviceUID{channels_, "deviceUID", std::nullopt};
    Setting<int> selectedChannelIndex{channels_, "channelIndex", 0};
    Setting<bool> mainInputIsStereo{channels_, "mainInputIsStereo", false};
    Setting<int> mainInputRightChannelIndex{channels_, "mainInputRightChannelIndex", 1};
    Setting<bool> mainInputIsDigital{channels_, "mainInputIsDigital", false};
    Setting<bool> mainInputMeasuresLoudness{channels_, "mainInputMeasuresLoudness", false};

    // Loudness.
    Setting<TarvaneKit::LoudnessMetric> loudnessReadout{channels_, "loudnessReadout",
                                                        TarvaneKit::LoudnessMetric::shortTerm};
    Setting<LoudnessTarget> loudnessTarget{channels_, "loudnessTarget",
                                           LoudnessTarget::presets().front()};
    Setting<LoudnessColors> loudnessColors{channels_, "loudnessColors", {}};

    // The other channels, and which channel a module shows.
    Setting<std::vector<ChannelConfig>> extraChannels{channels_, "extraChannels", {}};
    Setting<TarvaneKit::UUID> splMeterChannelID{windows_, "splMeterChannelID",
                                                TarvaneKit::UUID::main()};
    Setting<TarvaneKit::UUID> rtaChannelID{windows_, "rtaChannelID", TarvaneKit::UUID::main()};
    Setting<TarvaneKit::UUID> spectrogramChannelID{windows_, "spectrogramChannelID",
                                                   TarvaneKit::UUID::main()};
    Setting<std::optional<TarvaneKit::UUID>> levelHistoryChannelID{
        windows_, "levelHistoryChannelID", std::nullopt};
    Setting<std::vector<TarvaneKit::UUID>> levelHistoryOverlayChannelIDs{
        windows_, "levelHistoryOverlayChannelIDs", {}};
    Setting<std::map<TarvaneKit::UUID, ChannelWindowLayout>> channelWindowLayouts{
        windows_, "channelWindowLayouts", {}};
    Setting<std::vector<TarvaneKit::UUID>> rtaOverlayChannelIDs{
        windows_, "rtaOverlayChannelIDs", {}};

    // The main input's spectrum.
    DisplaySetting<TarvaneKit::OctaveFraction> octaveFraction{
        display_, "octaveFraction", &ChannelDisplaySettings::octaveFraction};
    DisplaySetting<SpectrumViewMode> viewMode{display_, "viewMode",
                                              &ChannelDisplaySettings::viewMode};
    DisplaySetting<bool> octaveNormalizedSpectrumDisplay{
        display_, "octaveNormalizedSpectrumDisplay", &ChannelDisplaySettings::octaveNormalized};
    Setting<TarvaneKit::RGBAColor> rtaColor{channels_, "rtaColor", mainChannelColor};
    DisplaySetting<TarvaneKit::RGBAColor> rtaPeakColor{display_, "rtaPeakColor",
                                                       &ChannelDisplaySettings::peakHoldColor};
    DisplaySetting<bool> showPeakHold{display_, "showPeakHold",
                                      &ChannelDisplaySettings::showsPeakHold};
    Setting<TarvaneKit::TimeWeighting> rtaTimeWeighting{channels_, "rtaTimeWeighting",
                                                        TarvaneKit::TimeWeighting::none};
    /// Absent is not stored: no curve chosen, the default comes back at the next launch.
    DisplaySetting<std::optional<std::string>> selectedTargetCurveName{
        display_, "targetCurveName", &ChannelDisplaySettings::targetCurveName};
    DisplaySetting<double> targetCurveReferenceDB{display_, "targetCurveReferenceDB",
                                                  &ChannelDisplaySettings::targetCurveReferenceDB};
    DisplaySetting<double> targetCurveReferenceDBFS{
        display_, "targetCurveReferenceDBFS", &ChannelDisplaySettings::targetCurveReferenceDBFS};

    // The main input's meter.
    DisplaySetting<MetricMode> metricMode{display_, "metricMode",
                                          &ChannelDisplaySettings::metricMode};
    DisplaySetting<TarvaneKit::Weighting> splWeighting{display_, "splWeighting",
                                                       &ChannelDisplaySettings::splWeighting};
    DisplaySetting<TarvaneKit::TimeWeighting> splTimeWeighting{
        display_, "splTimeWeighting", &ChannelDisplaySettings::splTimeWeighting};
    DisplaySetting<TarvaneKit::Weighting> peakWeighting{display_, "peakWeighting",
                                                        &ChannelDisplaySettings::peakWeighting};
    Setting<TarvaneKit::Weighting> leqWeighting{channels_, "leqWeighting",
                                                TarvaneKit::Weighting::a};
    Setting<double> leqIntegrationSeconds{channels_, "leqIntegrationSeconds", 60.0};
    Setting<TarvaneKit::TrafficLightConfig> trafficLightConfig{
        channels_, "trafficLightConfig", TarvaneKit::TrafficLightConfig::defaultSPL()};
    Setting<TarvaneKit::TrafficLightConfig> trafficLightConfigDBFS{
        channels_, "trafficLightConfigDBFS", TarvaneKit::TrafficLightConfig::defaultDBFS()};
    Setting<TarvaneKit::CalibrationProfile> calibration{channels_, "calibration", {}};

    // Spectrograms.
    Setting<SpectrogramRanges> spectrogramRanges{channels_, "spectrogramRanges", {}};
    Setting<double> spectrogramTimeSpanSeconds{channels_, "spectrogramTimeSpanSeconds", 2.0};
    Setting<double> spectrogramSliceHeightMultiplier{channels_, "spectrogramSliceHeightMultiplier",
                                                     1.0};
    Setting<std::vector<SpectrogramColorStop>> spectrogramColorStops{
        channels_, "spectrogramColorStops", defaultSpectrogramColorStops()};
    Setting<std::vector<SpectrogramColorPreset>> spectrogramColorPresets{
        channels_, "spectrogramColorPresets", {}};

    // The layout of the main window.
    Setting<PanelLayout> panelLayout{windows_, "panelLayout", PanelLayout::both};
    /// The spectrum's share of the graph area, 0.15 to 0.85.
    Setting<double> panelSplitFraction{windows_, "panelSplitFraction", 0.5};
    Setting<ModulePlacement> splMeterPlacement{windows_, "splMeterPlacement",
                                               ModulePlacement::mainWindow};
    Setting<ModulePlacement> rtaPlacement{windows_, "rtaPlacement", ModulePlacement::mainWindow};
    Setting<ModulePlacement> spectrogramPlacement{windows_, "spectrogramPlacement",
                                                  ModulePlacement::mainWindow};
    Setting<ModulePlacement> levelHistoryPlacement{windows_, "levelHistoryPlacement",
                                                   ModulePlacement::mainWindow};
    Setting<GraphOrientation> graphOrientation{windows_, "graphOrientation",
                                               GraphOrientation::stacked};
    Setting<GraphOrder> graphOrder{windows_, "graphOrder", GraphOrder::rtaFirst};
    Setting<LevelHistoryPosition> levelHistoryPosition{windows_, "levelHistoryPosition",
                                                       LevelHistoryPosition::aboveGraphs};

    // Readouts and the level history.
    DisplaySetting<bool> splReadoutShowsDBFS{display_, "splReadoutShowsDBFS",
                                             &ChannelDisplaySettings::showsDBFS};
    Setting<bool> splReadoutShowsClock{windows_, "splReadoutShowsClock", false};
    Setting<bool> splMeterShowsLevelBar{channels_, "splMeterShowsLevelBar", true};
    Setting<LevelHistoryZoom> levelHistoryZoom{channels_, "levelHistoryZoom",
                                               LevelHistoryZoom::session};
    Setting<bool> levelHistoryShowsMomentary{channels_, "levelHistoryShowsMomentary", false};

    // The main input's feedback alerts.
    Setting<bool> ringOutEnabled{channels_, "ringOutEnabled", true};
    DisplaySetting<TarvaneKit::RingOutSensitivity> ringOutSensitivity{
        display_, "ringOutSensitivity", &ChannelDisplaySettings::ringOutSensitivity};

    // All of them.

    const std::vector<SettingBase*>& channelSettings() const { return channels_.settings(); }
    const std::vector<SettingBase*>& windowSettings() const { return windows_.settings(); }

    // The main input's display settings as one record.

    ChannelDisplaySettings mainDisplay() const;
    /// Sets the settings that differ, each with its effect.
    void assignMainDisplay(const ChannelDisplaySettings& display);

    /// Two settings make one Leq, and start it over once.
    void configureLeq(TarvaneKit::Weighting weighting, double integrationSeconds);

  protected:
    ~MeterSettings() = default;
};

}  // namespace TarvaneApp
