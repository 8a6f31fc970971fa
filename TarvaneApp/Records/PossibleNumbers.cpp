#include "Records/PossibleNumbers.h"

#include <algorithm>
#include <cmath>

namespace TarvaneApp {

namespace {

// Far beyond what any device has, and far from where counting from 1 would overflow.
constexpr int largestInput = 65535;

// Silence reads -240 dB; no sound and no gain comes near the other end.
constexpr double largestLevelDB = 1000.0;

constexpr double longestLeqSeconds = 366.0 * 86400.0;

// More than the rows that are kept is never shown.
constexpr double longestTimeSpanSeconds = 120.0;

// Below the smallest the drawing takes all for the same.
constexpr double smallestSliceHeight = 0.01;
constexpr double largestSliceHeight = 100.0;

// 3 dB, and what rounding may take off them.
constexpr double narrowestRangeDB = 3.0 - 1e-6;

// No comparison with a value that is no number holds.
bool isWithin(double value, double smallest, double largest) {
    return smallest <= value && value <= largest;
}

template <class T>
void keepIf(bool isPossible, T& value, const T& otherwise) {
    if (!isPossible) {
        value = otherwise;
    }
}

}  // namespace

bool PossibleNumbers::isInput(int index) {
    return 0 <= index && index <= largestInput;
}

bool PossibleNumbers::isLevel(double levelDB) {
    return isWithin(levelDB, -largestLevelDB, largestLevelDB);
}

bool PossibleNumbers::isLeqTime(double seconds) {
    return 0.0 < seconds && seconds <= longestLeqSeconds;
}

bool PossibleNumbers::isSpectrogramTimeSpan(double seconds) {
    return 0.0 < seconds && seconds <= longestTimeSpanSeconds;
}

bool PossibleNumbers::isSliceHeight(double multiplier) {
    return isWithin(multiplier, smallestSliceHeight, largestSliceHeight);
}

bool PossibleNumbers::isSplitFraction(double fraction) {
    return isWithin(fraction, smallestSplitFraction, largestSplitFraction);
}

bool PossibleNumbers::isSpectrogramRange(const SpectrogramRange& range) {
    return isLevel(range.floorDB) && isLevel(range.ceilingDB) &&
           range.ceilingDB - range.floorDB >= narrowestRangeDB;
}

bool PossibleNumbers::isLoudnessTarget(const LoudnessTarget& target) {
    return isLevel(target.targetLUFS) && isLevel(target.toleranceLU) && target.toleranceLU >= 0.0 &&
           isLevel(target.truePeakCeilingDBTP);
}

bool PossibleNumbers::areThresholds(const TarvaneKit::TrafficLightConfig& config) {
    return std::ranges::all_of(config.bands, isLevel, &TarvaneKit::TrafficLightBand::thresholdDB);
}

SpectrogramRanges PossibleNumbers::repaired(const SpectrogramRanges& ranges,
                                            const SpectrogramRanges& otherwise) {
    SpectrogramRanges result = ranges;
    keepIf(isSpectrogramRange(ranges.spl), result.spl, otherwise.spl);
    keepIf(isSpectrogramRange(ranges.dbfs), result.dbfs, otherwise.dbfs);
    return result;
}

ChannelDisplaySettings PossibleNumbers::repaired(ChannelDisplaySettings display,
                                                 const ChannelDisplaySettings& otherwise) {
    keepIf(isLevel(display.targetCurveReferenceDB), display.targetCurveReferenceDB,
           otherwise.targetCurveReferenceDB);
    keepIf(isLevel(display.targetCurveReferenceDBFS), display.targetCurveReferenceDBFS,
           otherwise.targetCurveReferenceDBFS);
    return display;
}

ChannelWindowLayout PossibleNumbers::repaired(ChannelWindowLayout layout) {
    keepIf(isSplitFraction(layout.splitFraction), layout.splitFraction,
           ChannelWindowLayout{}.splitFraction);
    return layout;
}

ChannelConfig PossibleNumbers::repaired(ChannelConfig channel) {
    keepIf(isInput(channel.channelIndex), channel.channelIndex, 0);
    keepIf(isInput(channel.rightChannelIndex), channel.rightChannelIndex,
           std::min(channel.channelIndex + 1, largestInput));
    channel.spectrogramRanges = repaired(channel.spectrogramRanges);
    if (channel.display) {
        channel.display = repaired(*channel.display);
    }
    return channel;
}

}  // namespace TarvaneApp
