// All settings of an engine, by key, in the order of their declaration.
#pragma once

#include <map>
#include <string>

#include "Engine/MeterEngine.h"

namespace TarvaneTests {

template <class Visit>
void forEachSetting(TarvaneApp::MeterEngine& engine, const Visit& visit) {
    visit("deviceUID", engine.selectedDeviceUID);
    visit("channelIndex", engine.selectedChannelIndex);
    visit("mainInputIsStereo", engine.mainInputIsStereo);
    visit("mainInputRightChannelIndex", engine.mainInputRightChannelIndex);
    visit("mainInputIsDigital", engine.mainInputIsDigital);
    visit("mainInputMeasuresLoudness", engine.mainInputMeasuresLoudness);
    visit("loudnessReadout", engine.loudnessReadout);
    visit("loudnessTarget", engine.loudnessTarget);
    visit("loudnessColors", engine.loudnessColors);
    visit("extraChannels", engine.extraChannels);
    visit("splMeterChannelID", engine.splMeterChannelID);
    visit("rtaChannelID", engine.rtaChannelID);
    visit("spectrogramChannelID", engine.spectrogramChannelID);
    visit("levelHistoryChannelID", engine.levelHistoryChannelID);
    visit("levelHistoryOverlayChannelIDs", engine.levelHistoryOverlayChannelIDs);
    visit("channelWindowLayouts", engine.channelWindowLayouts);
    visit("rtaOverlayChannelIDs", engine.rtaOverlayChannelIDs);
    visit("octaveFraction", engine.octaveFraction);
    visit("viewMode", engine.viewMode);
    visit("octaveNormalizedSpectrumDisplay", engine.octaveNormalizedSpectrumDisplay);
    visit("rtaColor", engine.rtaColor);
    visit("rtaPeakColor", engine.rtaPeakColor);
    visit("showPeakHold", engine.showPeakHold);
    visit("rtaTimeWeighting", engine.rtaTimeWeighting);
    visit("targetCurveName", engine.selectedTargetCurveName);
    visit("targetCurveReferenceDB", engine.targetCurveReferenceDB);
    visit("targetCurveReferenceDBFS", engine.targetCurveReferenceDBFS);
    visit("metricMode", engine.metricMode);
    visit("splWeighting", engine.splWeighting);
    visit("splTimeWeighting", engine.splTimeWeighting);
    visit("peakWeighting", engine.peakWeighting);
    visit("leqWeighting", engine.leqWeighting);
    visit("leqIntegrationSeconds", engine.leqIntegrationSeconds);
    visit("trafficLightConfig", engine.trafficLightConfig);
    visit("trafficLightConfigDBFS", engine.trafficLightConfigDBFS);
    visit("calibration", engine.calibration);
    visit("spectrogramRanges", engine.spectrogramRanges);
    visit("spectrogramTimeSpanSeconds", engine.spectrogramTimeSpanSeconds);
    visit("spectrogramSliceHeightMultiplier", engine.spectrogramSliceHeightMultiplier);
    visit("spectrogramColorStops", engine.spectrogramColorStops);
    visit("spectrogramColorPresets", engine.spectrogramColorPresets);
    visit("panelLayout", engine.panelLayout);
    visit("panelSplitFraction", engine.panelSplitFraction);
    visit("splMeterPlacement", engine.splMeterPlacement);
    visit("rtaPlacement", engine.rtaPlacement);
    visit("spectrogramPlacement", engine.spectrogramPlacement);
    visit("levelHistoryPlacement", engine.levelHistoryPlacement);
    visit("graphOrientation", engine.graphOrientation);
    visit("graphOrder", engine.graphOrder);
    visit("levelHistoryPosition", engine.levelHistoryPosition);
    visit("splReadoutShowsDBFS", engine.splReadoutShowsDBFS);
    visit("splReadoutShowsClock", engine.splReadoutShowsClock);
    visit("splMeterShowsLevelBar", engine.splMeterShowsLevelBar);
    visit("levelHistoryZoom", engine.levelHistoryZoom);
    visit("levelHistoryShowsMomentary", engine.levelHistoryShowsMomentary);
    visit("ringOutEnabled", engine.ringOutEnabled);
    visit("ringOutSensitivity", engine.ringOutSensitivity);
}

/// The value of every setting as text.
inline std::map<std::string, std::string> valuesOfSettings(TarvaneApp::MeterEngine& engine) {
    std::map<std::string, std::string> values;
    forEachSetting(engine, [&](const std::string& key, const auto& setting) {
        values.emplace(key, TarvaneKit::encode(setting()).value_or("no text"));
    });
    return values;
}

}  // namespace TarvaneTests
