// Which numbers a stored setting may hold. What a control or a file of another version can have set
// passes as it is; what no setting ever was, as a damaged store or a strange hand leaves it, would
// do harm: a display of no height, a reading of no meaning.
//
// The predicates say whether a number may stand, and whoever reads it what stands in its place.
// Colours need none: a component beyond 0 to 1 is drawn as the nearest one within.
#pragma once

#include "Metrics/TrafficLightConfig.h"
#include "Records/ChannelConfig.h"
#include "Records/ChannelWindowLayout.h"
#include "Records/LoudnessTarget.h"
#include "Records/SpectrogramRanges.h"

namespace TarvaneApp::PossibleNumbers {

/// A zero-based input of a device, whether or not the device has it today.
bool isInput(int index);
/// Any level or difference of levels, in dB.
bool isLevel(double levelDB);
bool isLeqTime(double seconds);
bool isSpectrogramTimeSpan(double seconds);
bool isSliceHeight(double multiplier);

/// Each graph keeps enough room to be read and to be dragged open again.
inline constexpr double smallestSplitFraction = 0.15;
inline constexpr double largestSplitFraction = 0.85;
bool isSplitFraction(double fraction);

/// Floor and ceiling at least 3 dB apart: closer together they leave no picture.
bool isSpectrogramRange(const SpectrogramRange& range);
bool isLoudnessTarget(const LoudnessTarget& target);
bool areThresholds(const TarvaneKit::TrafficLightConfig& config);

// Records with the default, or what is given, in the place of what can't be; the rest of them
// stays. A channel's calibration is taken as it is.

SpectrogramRanges repaired(const SpectrogramRanges& ranges,
                           const SpectrogramRanges& otherwise = {});
ChannelDisplaySettings repaired(ChannelDisplaySettings display,
                                const ChannelDisplaySettings& otherwise = {});
ChannelWindowLayout repaired(ChannelWindowLayout layout);
ChannelConfig repaired(ChannelConfig channel);

}  // namespace TarvaneApp::PossibleNumbers
