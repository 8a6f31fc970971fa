// Any value of a setting with its numbers brought to where they may stand, for tests of what
// survives a restart.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "Engine/MeterSettings.h"

namespace TarvaneTests {

struct NumberRange {
    double smallest = 0.0;
    double largest = 0.0;
};

inline constexpr NumberRange possibleLevelsDB{-300.0, 300.0};
inline constexpr NumberRange possibleSplitFractions{0.15, 0.85};

inline double broughtInto(const NumberRange& range, double number) {
    return range.smallest <= number && number <= range.largest
               ? number
               : range.smallest + std::fmod(std::abs(number), range.largest - range.smallest);
}

inline double possibleLevel(double levelDB) {
    return broughtInto(possibleLevelsDB, levelDB);
}

inline TarvaneApp::SpectrogramRange possibleRange(const TarvaneApp::SpectrogramRange& range) {
    const double floorDB = possibleLevel(range.floorDB);
    return {floorDB, floorDB + 3.0 + std::abs(possibleLevel(range.ceilingDB))};
}

template <class T>
T possible(const std::string& key, T value) {
    if constexpr (std::is_same_v<T, double>) {
        static const std::map<std::string, NumberRange> ranges{
            {"targetCurveReferenceDB", possibleLevelsDB},
            {"targetCurveReferenceDBFS", possibleLevelsDB},
            {"leqIntegrationSeconds", {1.0, 86400.0}},
            {"spectrogramTimeSpanSeconds", {0.5, 6.0}},
            {"spectrogramSliceHeightMultiplier", {0.5, 4.0}},
            {"panelSplitFraction", possibleSplitFractions}};
        value = broughtInto(ranges.at(key), value);
    } else if constexpr (std::is_same_v<T, int>) {
        value &= 0xFFFF;
    } else if constexpr (std::is_same_v<T, TarvaneKit::TrafficLightConfig>) {
        for (auto& band : value.bands) {
            band.thresholdDB = possibleLevel(band.thresholdDB);
        }
    } else if constexpr (std::is_same_v<T, TarvaneApp::LoudnessTarget>) {
        value.targetLUFS = possibleLevel(value.targetLUFS);
        value.toleranceLU = std::abs(possibleLevel(value.toleranceLU));
        value.truePeakCeilingDBTP = possibleLevel(value.truePeakCeilingDBTP);
    } else if constexpr (std::is_same_v<T, TarvaneApp::SpectrogramRanges>) {
        value = {.spl = possibleRange(value.spl), .dbfs = possibleRange(value.dbfs)};
    } else if constexpr (std::is_same_v<T, TarvaneKit::CalibrationProfile>) {
        value.micCalFileReferenceSPL =
            std::abs(broughtInto({0.0, 200.0}, value.micCalFileReferenceSPL));
        if (value.reference) {
            value.reference->offsetDB = possibleLevel(value.reference->offsetDB);
            if (value.reference->inputGainDB) {
                value.reference->inputGainDB = possibleLevel(*value.reference->inputGainDB);
            }
        }
        if (value.micCalFile) {
            if (value.micCalFile->sensFactorDB) {
                value.micCalFile->sensFactorDB = possibleLevel(*value.micCalFile->sensFactorDB);
            }
            auto& points = value.micCalFile->points;
            for (auto& point : points) {
                point.magnitudeDB = possibleLevel(point.magnitudeDB);
            }
            std::ranges::stable_sort(points, {}, &TarvaneKit::MicCalibrationPoint::frequencyHz);
        }
    } else if constexpr (std::is_same_v<T, std::vector<TarvaneApp::ChannelConfig>>) {
        for (TarvaneApp::ChannelConfig& channel : value) {
            channel.channelIndex = possible("", channel.channelIndex);
            channel.rightChannelIndex = possible("", channel.rightChannelIndex);
            channel.spectrogramRanges = possible("", channel.spectrogramRanges);
            if (channel.display) {
                auto& display = *channel.display;
                display.targetCurveReferenceDB = possibleLevel(display.targetCurveReferenceDB);
                display.targetCurveReferenceDBFS = possibleLevel(display.targetCurveReferenceDBFS);
            }
        }
    } else if constexpr (std::is_same_v<
                             T, std::map<TarvaneKit::UUID, TarvaneApp::ChannelWindowLayout>>) {
        for (auto& [id, layout] : value) {
            layout.splitFraction = broughtInto(possibleSplitFractions, layout.splitFraction);
        }
    }
    return value;
}

}  // namespace TarvaneTests
