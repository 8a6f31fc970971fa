// All settings of an engine, by key, in the order of their declaration.
#pragma once

#include <map>
#include <string>

#include "Engine/MeterEngine.h"

namespace TarvaneTests {

template <class Visit>
void forEachSetting(TarvaneApp::MeterEngine& engine, const Visit& visit) {
    using Key = TarvaneApp::Persistence::Key;
    visit(Key::deviceUID, engine.selectedDeviceUID);
    visit(Key::channelIndex, engine.selectedChannelIndex);
    visit(Key::mainInputIsStereo, engine.mainInputIsStereo);
    visit(Key::mainInputRightChannelIndex, engine.mainInputRightChannelIndex);
    visit(Key::mainInputIsDigital, engine.mainInputIsDigital);
    visit(Key::mainInputMeasuresLoudness, engine.mainInputMeasuresLoudness);
    visit(Key::loudnessReadout, engine.loudnessReadout);
    visit(Key::loudnessTarget, engine.loudnessTarget);
    visit(Key::loudnessColors, engine.loudnessColors);
    visit(Key::extraChannels, engine.extraChannels);
    visit(Key::splMeterChannelID, engine.splMeterChannelID);
    visit(Key::rtaChannelID, engine.rtaChannelID);
    visit(Key::spectrogramChannelID, engine.spectrogramChannelID);
    visit(Key::levelHistoryChannelID, engine.levelHistoryChannelID);
    visit(Key::levelHistoryOverlayChannelIDs, engine.levelHistoryOverlayChannelIDs);
    visit(Key::channelWindowLayouts, engine.channelWindowLayouts);
    visit(Key::rtaOverlayChannelIDs, engine.rtaOverlayChannelIDs);
    visit(Key::octaveFraction, engine.octaveFraction);
    visit(Key::viewMode, engine.viewMode);
    visit(Key::octaveNormalizedSpectrumDisplay, engine.octaveNormalizedSpectrumDisplay);
    visit(Key::rtaColor, engine.rtaColor);
    visit(Key::rtaPeakColor, engine.rtaPeakColor);
    visit(Key::showPeakHold, engine.showPeakHold);
    visit(Key::rtaTimeWeighting, engine.rtaTimeWeighting);
    visit(Key::targetCurveName, engine.selectedTargetCurveName);
    visit(Key::targetCurveReferenceDB, engine.targetCurveReferenceDB);
    visit(Key::targetCurveReferenceDBFS, engine.targetCurveReferenceDBFS);
    visit(Key::metricMode, engine.metricMode);
    visit(Key::splWeighting, engine.splWeighting);
    visit(Key::splTimeWeighting, engine.splTimeWeighting);
    visit(Key::peakWeighting, engine.peakWeighting);
    visit(Key::leqWeighting, engine.leqWeighting);
    visit(Key::leqIntegrationSeconds, engine.leqIntegrationSeconds);
    visit(Key::trafficLightConfig, engine.trafficLightConfig);
    visit(Key::trafficLightConfigDBFS, engine.trafficLightConfigDBFS);
    visit(Key::calibration, engine.calibration);
    visit(Key::spectrogramRanges, engine.spectrogramRanges);
    visit(Key::spectrogramTimeSpanSeconds, engine.spectrogramTimeSpanSeconds);
    visit(Key::spectrogramSliceHeightMultiplier, engine.spectrogramSliceHeightMultiplier);
    visit(Key::spectrogramColorStops, engine.spectrogramColorStops);
    visit(Key::spectrogramColorPresets, engine.spectrogramColorPresets);
    visit(Key::panelLayout, engine.panelLayout);
    visit(Key::panelSplitFraction, engine.panelSplitFraction);
    visit(Key::splMeterPlacement, engine.splMeterPlacement);
    visit(Key::rtaPlacement, engine.rtaPlacement);
    visit(Key::spectrogramPlacement, engine.spectrogramPlacement);
    visit(Key::levelHistoryPlacement, engine.levelHistoryPlacement);
    visit(Key::graphOrientation, engine.graphOrientation);
    visit(Key::graphOrder, engine.graphOrder);
    visit(Key::levelHistoryPosition, engine.levelHistoryPosition);
    visit(Key::splReadoutShowsDBFS, engine.splReadoutShowsDBFS);
    visit(Key::splReadoutShowsClock, engine.splReadoutShowsClock);
    visit(Key::splMeterShowsLevelBar, engine.splMeterShowsLevelBar);
    visit(Key::levelHistoryZoom, engine.levelHistoryZoom);
    visit(Key::levelHistoryShowsMomentary, engine.levelHistoryShowsMomentary);
    visit(Key::ringOutEnabled, engine.ringOutEnabled);
    visit(Key::ringOutSensitivity, engine.ringOutSensitivity);
}

/// The value of every setting as text.
inline std::map<TarvaneApp::Persistence::Key, std::string> valuesOfSettings(
    TarvaneApp::MeterEngine& engine) {
    std::map<TarvaneApp::Persistence::Key, std::string> values;
    forEachSetting(engine, [&](auto key, const auto& setting) {
        values.emplace(key, TarvaneKit::encode(setting()).value_or("no text"));
    });
    return values;
}

}  // namespace TarvaneTests
