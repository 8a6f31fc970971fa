#include "DSP/SpectrumSmoothing.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"
#include "DSP/LevelDetector.h"

namespace TarvaneKit {

namespace {

// The part of the way to the new powers that the average goes.
double newShare(SpectrumAverage& average, TimeWeighting timeWeighting, double elapsedSeconds) {
    switch (timeWeighting) {
        case TimeWeighting::fast:
            return 1.0 - std::exp(-elapsedSeconds / LevelDetector::fastSeconds);
        case TimeWeighting::slow:
            return 1.0 - std::exp(-elapsedSeconds / LevelDetector::slowSeconds);
        case TimeWeighting::infinite:
            average.totalWeight += elapsedSeconds;
            // A mean over no time at all is its newest value.
            return average.totalWeight != 0.0 ? elapsedSeconds / average.totalWeight : 1.0;
        case TimeWeighting::none:
            break;
    }
    return 1.0;
}

}  // namespace

void SpectrumAverage::reset() {
    state.clear();
    totalWeight = 0.0;
}

void smoothLevels(const SpectrumFrame& frame, SpectrumAverage& average, TimeWeighting timeWeighting,
                  double elapsedSeconds, std::span<double> smoothedDB) {
    TARVANE_PRECONDITION(frame.powers.size() == frame.levelsDB.size());
    TARVANE_PRECONDITION(frame.powers.size() == smoothedDB.size());
    if (average.state.size() != frame.powers.size()) {
        average.state.assign(frame.powers.begin(), frame.powers.end());
        average.totalWeight = elapsedSeconds;
        std::ranges::copy(frame.levelsDB, smoothedDB.begin());
        return;
    }
    const double share = newShare(average, timeWeighting, elapsedSeconds);
    if (timeWeighting == TimeWeighting::none) {
        std::ranges::copy(frame.powers, average.state.begin());
    } else {
        moveTowards(frame.powers, share, average.state);
    }
    levelsOfPowers(average.state, averageFloor, smoothedDB);
}

void smoothedLevelsDB(std::span<const double> newLevelsDB, SpectrumAverage& average,
                      TimeWeighting timeWeighting, double elapsedSeconds,
                      std::span<double> smoothedDB) {
    TARVANE_PRECONDITION(newLevelsDB.size() == smoothedDB.size());
    // The result's own room serves for the powers until the result is written.
    powersOfLevels(newLevelsDB, smoothedDB);
    smoothLevels({.powers = smoothedDB, .levelsDB = newLevelsDB}, average, timeWeighting,
                 elapsedSeconds, smoothedDB);
}

}  // namespace TarvaneKit
