// The whole working setup at one moment, as a profile keeps it. Every field may be absent, and then
// says nothing: a file of an older version, or one trimmed by hand, leaves the rest as it is.
//
// What a snapshot is taken of and does is SettingsTransfer's.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Calibration/CalibrationProfile.h"
#include "Core/Coding.h"
#include "Core/RGBAColor.h"
#include "Core/UUID.h"
#include "DSP/OctaveFraction.h"
#include "DSP/RingOutSensitivity.h"
#include "DSP/Weighting.h"
#include "Metrics/LoudnessMetric.h"
#include "Metrics/TrafficLightConfig.h"
#include "Records/ChannelConfig.h"
#include "Records/ChannelWindowLayout.h"
#include "Records/DisplayEnums.h"
#include "Records/LayoutEnums.h"
#include "Records/LevelHistoryZoom.h"
#include "Records/LoudnessTarget.h"
#include "Records/SpectrogramColorStop.h"
#include "Records/SpectrogramRanges.h"
#include "Records/SpectrumViewMode.h"

namespace TarvaneApp {

struct SettingsSnapshot {
    struct AudioInput {
        /// Absent: the default input.
        std::optional<std::string> deviceUID;
        int channelIndex = 0;

        bool operator==(const AudioInput&) const = default;
    };
    // Of these two an empty one says "none", where an absent one says nothing.
    struct TargetCurveChoice {
        std::optional<std::string> name;

        bool operator==(const TargetCurveChoice&) const = default;
    };
    struct ChannelChoice {
        std::optional<TarvaneKit::UUID> id;

        bool operator==(const ChannelChoice&) const = default;
    };

    std::optional<AudioInput> audioInput;
    std::optional<TarvaneKit::CalibrationProfile> calibration;
    std::optional<bool> mainInputIsDigital;
    std::optional<bool> mainInputIsStereo;
    std::optional<int> mainInputRightChannelIndex;
    std::optional<bool> mainInputMeasuresLoudness;
    std::optional<std::vector<ChannelConfig>> channels;
    std::optional<TarvaneKit::OctaveFraction> octaveFraction;
    std::optional<SpectrumViewMode> viewMode;
    std::optional<bool> octaveNormalizedSpectrumDisplay;
    std::optional<TarvaneKit::RGBAColor> rtaColor;
    std::optional<TarvaneKit::RGBAColor> rtaPeakColor;
    std::optional<bool> showPeakHold;
    std::optional<TarvaneKit::TimeWeighting> rtaTimeWeighting;
    std::optional<TargetCurveChoice> targetCurveName;
    std::optional<double> targetCurveReferenceDB;
    std::optional<double> targetCurveReferenceDBFS;
    std::optional<MetricMode> metricMode;
    std::optional<TarvaneKit::Weighting> splWeighting;
    std::optional<TarvaneKit::TimeWeighting> splTimeWeighting;
    std::optional<TarvaneKit::Weighting> peakWeighting;
    std::optional<TarvaneKit::Weighting> leqWeighting;
    std::optional<double> leqIntegrationSeconds;
    std::optional<TarvaneKit::TrafficLightConfig> trafficLightConfig;
    std::optional<TarvaneKit::TrafficLightConfig> trafficLightConfigDBFS;
    std::optional<TarvaneKit::LoudnessMetric> loudnessReadout;
    std::optional<LoudnessTarget> loudnessTarget;
    std::optional<LoudnessColors> loudnessColors;
    std::optional<SpectrogramRanges> spectrogramRanges;
    // The single range of old files; read and never written.
    std::optional<double> spectrogramFloorDB;
    std::optional<double> spectrogramCeilingDB;
    std::optional<double> spectrogramTimeSpanSeconds;
    std::optional<double> spectrogramSliceHeightMultiplier;
    std::optional<std::vector<SpectrogramColorStop>> spectrogramColorStops;
    std::optional<std::vector<SpectrogramColorPreset>> spectrogramColorPresets;
    std::optional<PanelLayout> panelLayout;
    std::optional<double> panelSplitFraction;
    std::optional<bool> ringOutEnabled;
    std::optional<TarvaneKit::RingOutSensitivity> ringOutSensitivity;
    std::optional<ModulePlacement> splMeterPlacement;
    std::optional<ModulePlacement> rtaPlacement;
    std::optional<ModulePlacement> spectrogramPlacement;
    std::optional<ModulePlacement> levelHistoryPlacement;
    std::optional<GraphOrientation> graphOrientation;
    std::optional<GraphOrder> graphOrder;
    std::optional<LevelHistoryPosition> levelHistoryPosition;
    std::optional<bool> splReadoutShowsDBFS;
    std::optional<bool> splReadoutShowsClock;
    std::optional<bool> splMeterShowsLevelBar;
    std::optional<LevelHistoryZoom> levelHistoryZoom;
    std::optional<bool> levelHistoryShowsMomentary;
    std::optional<TarvaneKit::UUID> splMeterChannelID;
    std::optional<TarvaneKit::UUID> rtaChannelID;
    std::optional<TarvaneKit::UUID> spectrogramChannelID;
    std::optional<std::vector<TarvaneKit::UUID>> rtaOverlayChannelIDs;
    std::optional<ChannelChoice> levelHistoryChannelID;
    std::optional<std::vector<TarvaneKit::UUID>> levelHistoryOverlayChannelIDs;
    std::optional<std::map<TarvaneKit::UUID, ChannelWindowLayout>> channelWindowLayouts;

    bool operator==(const SettingsSnapshot&) const = default;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::SettingsSnapshot::AudioInput> {
    using Record = TarvaneApp::SettingsSnapshot::AudioInput;
    static constexpr auto keys = std::tuple{
        optional("deviceUID", &Record::deviceUID),
        required("channelIndex", &Record::channelIndex),
    };
};

template <>
struct TarvaneKit::Coding<TarvaneApp::SettingsSnapshot::TargetCurveChoice> {
    static constexpr auto keys = std::tuple{
        optional("name", &TarvaneApp::SettingsSnapshot::TargetCurveChoice::name),
    };
};

template <>
struct TarvaneKit::Coding<TarvaneApp::SettingsSnapshot::ChannelChoice> {
    static constexpr auto keys = std::tuple{
        optional("id", &TarvaneApp::SettingsSnapshot::ChannelChoice::id),
    };
};

template <>
struct TarvaneKit::Coding<TarvaneApp::SettingsSnapshot> {
    using Record = TarvaneApp::SettingsSnapshot;
    static constexpr auto keys = std::tuple{
        optional("audioInput", &Record::audioInput),
        optional("calibration", &Record::calibration),
        optional("mainInputIsDigital", &Record::mainInputIsDigital),
        optional("mainInputIsStereo", &Record::mainInputIsStereo),
        optional("mainInputRightChannelIndex", &Record::mainInputRightChannelIndex),
        optional("mainInputMeasuresLoudness", &Record::mainInputMeasuresLoudness),
        optional("channels", &Record::channels),
        optional("octaveFraction", &Record::octaveFraction),
        optional("viewMode", &Record::viewMode),
        optional("octaveNormalizedSpectrumDisplay", &Record::octaveNormalizedSpectrumDisplay),
        optional("rtaColor", &Record::rtaColor),
        optional("rtaPeakColor", &Record::rtaPeakColor),
        optional("showPeakHold", &Record::showPeakHold),
        optional("rtaTimeWeighting", &Record::rtaTimeWeighting),
        optional("targetCurveName", &Record::targetCurveName),
        optional("targetCurveReferenceDB", &Record::targetCurveReferenceDB),
        optional("targetCurveReferenceDBFS", &Record::targetCurveReferenceDBFS),
        optional("metricMode", &Record::metricMode),
        optional("splWeighting", &Record::splWeighting),
        optional("splTimeWeighting", &Record::splTimeWeighting),
        optional("peakWeighting", &Record::peakWeighting),
        optional("leqWeighting", &Record::leqWeighting),
        optional("leqIntegrationSeconds", &Record::leqIntegrationSeconds),
        optional("trafficLightConfig", &Record::trafficLightConfig),
        optional("trafficLightConfigDBFS", &Record::trafficLightConfigDBFS),
        optional("loudnessReadout", &Record::loudnessReadout),
        optional("loudnessTarget", &Record::loudnessTarget),
        optional("loudnessColors", &Record::loudnessColors),
        optional("spectrogramRanges", &Record::spectrogramRanges),
        optional("spectrogramFloorDB", &Record::spectrogramFloorDB),
        optional("spectrogramCeilingDB", &Record::spectrogramCeilingDB),
        optional("spectrogramTimeSpanSeconds", &Record::spectrogramTimeSpanSeconds),
        optional("spectrogramSliceHeightMultiplier", &Record::spectrogramSliceHeightMultiplier),
        optional("spectrogramColorStops", &Record::spectrogramColorStops),
        optional("spectrogramColorPresets", &Record::spectrogramColorPresets),
        optional("panelLayout", &Record::panelLayout),
        optional("panelSplitFraction", &Record::panelSplitFraction),
        optional("ringOutEnabled", &Record::ringOutEnabled),
        optional("ringOutSensitivity", &Record::ringOutSensitivity),
        optional("splMeterPlacement", &Record::splMeterPlacement),
        optional("rtaPlacement", &Record::rtaPlacement),
        optional("spectrogramPlacement", &Record::spectrogramPlacement),
        optional("levelHistoryPlacement", &Record::levelHistoryPlacement),
        optional("graphOrientation", &Record::graphOrientation),
        optional("graphOrder", &Record::graphOrder),
        optional("levelHistoryPosition", &Record::levelHistoryPosition),
        optional("splReadoutShowsDBFS", &Record::splReadoutShowsDBFS),
        optional("splReadoutShowsClock", &Record::splReadoutShowsClock),
        optional("splMeterShowsLevelBar", &Record::splMeterShowsLevelBar),
        optional("levelHistoryZoom", &Record::levelHistoryZoom),
        optional("levelHistoryShowsMomentary", &Record::levelHistoryShowsMomentary),
        optional("splMeterChannelID", &Record::splMeterChannelID),
        optional("rtaChannelID", &Record::rtaChannelID),
        optional("spectrogramChannelID", &Record::spectrogramChannelID),
        optional("rtaOverlayChannelIDs", &Record::rtaOverlayChannelIDs),
        optional("levelHistoryChannelID", &Record::levelHistoryChannelID),
        optional("levelHistoryOverlayChannelIDs", &Record::levelHistoryOverlayChannelIDs),
        optional("channelWindowLayouts", &Record::channelWindowLayouts),
    };
};
