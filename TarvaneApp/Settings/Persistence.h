// The one accessor of the user's stored settings: which keys there are and in what form each
// type is stored. Texts and identifiers are stored as text, 64-bit floats as numbers,
// everything else as the JSON of its value. Main thread only.
#pragma once

#include <type_traits>

#include "Core/Coding.h"
#include "Core/UUID.h"
#include "Settings/KeyValueStore.h"

namespace TarvaneApp {

class Persistence {
  public:
    /// Every key is stored under "Tarvane." and its raw text.
    enum class Key {
        deviceUID,
        channelIndex,
        octaveFraction,
        viewMode,
        rtaColor,
        rtaPeakColor,
        showPeakHold,
        rtaTimeWeighting,
        targetCurveName,
        targetCurveReferenceDB,
        targetCurveReferenceDBFS,
        octaveNormalizedSpectrumDisplay,
        metricMode,
        splWeighting,
        splTimeWeighting,
        peakWeighting,
        leqWeighting,
        leqIntegrationSeconds,
        trafficLightConfig,
        trafficLightConfigDBFS,
        calibration,
        spectrogramRanges,
        spectrogramFloorDB,    ///< of settings that held a single range; read, never written
        spectrogramCeilingDB,  ///< the same
        spectrogramTimeSpanSeconds,
        spectrogramColorStops,
        spectrogramSliceHeightMultiplier,
        spectrogramColorPresets,
        panelLayout,
        panelSplitFraction,
        ringOutEnabled,
        ringOutSensitivity,
        splMeterPlacement,
        rtaPlacement,
        spectrogramPlacement,
        graphOrientation,
        splReadoutShowsClock,
        splReadoutShowsDBFS,
        levelHistoryPlacement,
        levelHistoryZoom,
        graphOrder,
        levelHistoryPosition,
        levelHistoryShowsMomentary,
        splMeterShowsLevelBar,
        activeProfileName,
        profilesIncludeAudioAndCalibration,
        mainInputIsDigital,
        extraChannels,
        splMeterChannelID,
        rtaChannelID,
        spectrogramChannelID,
        rtaOverlayChannelIDs,
        mainInputIsStereo,
        mainInputRightChannelIndex,
        levelHistoryChannelID,
        levelHistoryOverlayChannelIDs,
        channelWindowLayouts,
        mainInputMeasuresLoudness,
        loudnessReadout,
        loudnessTarget,
        loudnessColors,
    };

    explicit Persistence(KeyValueStore& store) : store_(store) {}

    /// Stores the value and flushes; absent removes the key. A value that has no stored form
    /// (a number that is not finite inside a record) leaves what is stored as it is.
    template <class T>
    void save(Key key, const std::optional<T>& value) {
        const std::string name = storedName(key);
        if (!value) {
            store_.remove(name);
        } else if constexpr (std::is_same_v<T, std::string>) {
            store_.setText(name, *value);
        } else if constexpr (std::is_same_v<T, TarvaneKit::UUID>) {
            store_.setText(name, value->text());
        } else if constexpr (std::is_same_v<T, double>) {
            store_.setNumber(name, *value);
        } else if (const auto bytes = TarvaneKit::encode(*value)) {
            store_.setData(name, *bytes);
        }
        store_.synchronize();
    }

    template <class T>
    void save(Key key, const T& value) {
        save(key, std::optional<T>(value));
    }

    /// Absent, of another form, or not decodable: empty.
    template <class T>
    std::optional<T> load(Key key) const {
        const std::string name = storedName(key);
        if constexpr (std::is_same_v<T, std::string>) {
            return store_.text(name);
        } else if constexpr (std::is_same_v<T, TarvaneKit::UUID>) {
            const auto text = store_.text(name);
            return text ? TarvaneKit::UUID::create(*text) : std::nullopt;
        } else if constexpr (std::is_same_v<T, double>) {
            return store_.number(name);
        } else {
            const auto bytes = store_.data(name);
            return bytes ? TarvaneKit::decode<T>(*bytes) : std::nullopt;
        }
    }

    static std::string storedName(Key key);

  private:
    KeyValueStore& store_;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::Persistence::Key> {
    using Key = TarvaneApp::Persistence::Key;
    static constexpr std::array all{
        RawCase{Key::deviceUID, "deviceUID"},
        RawCase{Key::channelIndex, "channelIndex"},
        RawCase{Key::octaveFraction, "octaveFraction"},
        RawCase{Key::viewMode, "viewMode"},
        RawCase{Key::rtaColor, "rtaColor"},
        RawCase{Key::rtaPeakColor, "rtaPeakColor"},
        RawCase{Key::showPeakHold, "showPeakHold"},
        RawCase{Key::rtaTimeWeighting, "rtaTimeWeighting"},
        RawCase{Key::targetCurveName, "targetCurveName"},
        RawCase{Key::targetCurveReferenceDB, "targetCurveReferenceDB"},
        RawCase{Key::targetCurveReferenceDBFS, "targetCurveReferenceDBFS"},
        RawCase{Key::octaveNormalizedSpectrumDisplay, "octaveNormalizedSpectrumDisplay"},
        RawCase{Key::metricMode, "metricMode"},
        RawCase{Key::splWeighting, "splWeighting"},
        RawCase{Key::splTimeWeighting, "splTimeWeighting"},
        RawCase{Key::peakWeighting, "peakWeighting"},
        RawCase{Key::leqWeighting, "leqWeighting"},
        RawCase{Key::leqIntegrationSeconds, "leqIntegrationSeconds"},
        RawCase{Key::trafficLightConfig, "trafficLightConfig"},
        RawCase{Key::trafficLightConfigDBFS, "trafficLightConfigDBFS"},
        RawCase{Key::calibration, "calibration"},
        RawCase{Key::spectrogramRanges, "spectrogramRanges"},
        RawCase{Key::spectrogramFloorDB, "spectrogramFloorDB"},
        RawCase{Key::spectrogramCeilingDB, "spectrogramCeilingDB"},
        RawCase{Key::spectrogramTimeSpanSeconds, "spectrogramTimeSpanSeconds"},
        RawCase{Key::spectrogramColorStops, "spectrogramColorStops"},
        RawCase{Key::spectrogramSliceHeightMultiplier, "spectrogramSliceHeightMultiplier"},
        RawCase{Key::spectrogramColorPresets, "spectrogramColorPresets"},
        RawCase{Key::panelLayout, "panelLayout"},
        RawCase{Key::panelSplitFraction, "panelSplitFraction"},
        RawCase{Key::ringOutEnabled, "ringOutEnabled"},
        RawCase{Key::ringOutSensitivity, "ringOutSensitivity"},
        RawCase{Key::splMeterPlacement, "splMeterPlacement"},
        RawCase{Key::rtaPlacement, "rtaPlacement"},
        RawCase{Key::spectrogramPlacement, "spectrogramPlacement"},
        RawCase{Key::graphOrientation, "graphOrientation"},
        RawCase{Key::splReadoutShowsClock, "splReadoutShowsClock"},
        RawCase{Key::splReadoutShowsDBFS, "splReadoutShowsDBFS"},
        RawCase{Key::levelHistoryPlacement, "levelHistoryPlacement"},
        RawCase{Key::levelHistoryZoom, "levelHistoryZoom"},
        RawCase{Key::graphOrder, "graphOrder"},
        RawCase{Key::levelHistoryPosition, "levelHistoryPosition"},
        RawCase{Key::levelHistoryShowsMomentary, "levelHistoryShowsMomentary"},
        RawCase{Key::splMeterShowsLevelBar, "splMeterShowsLevelBar"},
        RawCase{Key::activeProfileName, "activeProfileName"},
        RawCase{Key::profilesIncludeAudioAndCalibration, "profilesIncludeAudioAndCalibration"},
        RawCase{Key::mainInputIsDigital, "mainInputIsDigital"},
        RawCase{Key::extraChannels, "extraChannels"},
        RawCase{Key::splMeterChannelID, "splMeterChannelID"},
        RawCase{Key::rtaChannelID, "rtaChannelID"},
        RawCase{Key::spectrogramChannelID, "spectrogramChannelID"},
        RawCase{Key::rtaOverlayChannelIDs, "rtaOverlayChannelIDs"},
        RawCase{Key::mainInputIsStereo, "mainInputIsStereo"},
        RawCase{Key::mainInputRightChannelIndex, "mainInputRightChannelIndex"},
        RawCase{Key::levelHistoryChannelID, "levelHistoryChannelID"},
        RawCase{Key::levelHistoryOverlayChannelIDs, "levelHistoryOverlayChannelIDs"},
        RawCase{Key::channelWindowLayouts, "channelWindowLayouts"},
        RawCase{Key::mainInputMeasuresLoudness, "mainInputMeasuresLoudness"},
        RawCase{Key::loudnessReadout, "loudnessReadout"},
        RawCase{Key::loudnessTarget, "loudnessTarget"},
        RawCase{Key::loudnessColors, "loudnessColors"},
    };
};
