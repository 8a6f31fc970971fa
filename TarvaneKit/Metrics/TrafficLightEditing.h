// What a threshold slider may do to a table of levels and colours: the bands stay in descending
// order, whatever is dragged.
#pragma once

#include "Metrics/TrafficLightConfig.h"

namespace TarvaneKit {

/// The levels that a table's thresholds may take, in whole dB.
struct ThresholdRange {
    double bottomDB = 0.0;
    double topDB = 0.0;

    bool operator==(const ThresholdRange&) const = default;
};

inline constexpr ThresholdRange splThresholdRange{0.0, 140.0};
inline constexpr ThresholdRange dbfsThresholdRange{-120.0, 0.0};

/// A slider for one threshold.
struct ThresholdSlider {
    double valueDB = 0.0;
    double bottomDB = 0.0;
    /// Always at least 1 dB above the bottom.
    double topDB = 0.0;

    bool operator==(const ThresholdSlider&) const = default;
};

/// The highest threshold that the band may take: the one of the band before it, within the
/// range. The index is that of a band.
double thresholdLimitDB(const TrafficLightConfig& config, int index, ThresholdRange range);

ThresholdSlider thresholdSlider(const TrafficLightConfig& config, int index, ThresholdRange range);

/// Sets the band's threshold to the nearest whole dB, at most to its limit, and lowers every
/// later band that lies above it. A level that isn't finite changes nothing.
void setThreshold(TrafficLightConfig& config, int index, double thresholdDB, ThresholdRange range);

}  // namespace TarvaneKit
