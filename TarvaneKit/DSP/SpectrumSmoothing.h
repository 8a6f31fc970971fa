// Time weighting of spectra, and the floors that their levels end at. Averages are taken over
// power; the levels are in dB. The elapsed time is the caller's, so that any spacing of frames
// gives the same average.
#pragma once

#include <span>
#include <vector>

#include "DSP/Kernels/LevelKernel.h"
#include "DSP/Weighting.h"

namespace TarvaneKit {

/// A line of amplitude 1e-9 or less.
inline constexpr LevelFloor lineFloor{.power = 1e-18, .levelDB = -180.0};
/// A band of amplitude 1e-12 or less.
inline constexpr LevelFloor bandFloor{.power = 1e-24, .levelDB = -240.0};
/// An average of power 1e-12 or less.
inline constexpr LevelFloor averageFloor{.power = 1e-12, .levelDB = -120.0};

/// The running average of one spectrum.
struct SpectrumAverage {
    /// Linear power per entry; empty before the first frame.
    std::vector<double> state;
    /// Seconds in the average, counted for `infinite` alone.
    double totalWeight = 0.0;

    void reset();
};

/// One frame, given as powers and as their levels. Both are as long as the result.
struct SpectrumFrame {
    std::span<const double> powers;
    std::span<const double> levelsDB;
};

/// Takes one frame into the average and writes its levels, `averageFloor` at the least. A frame
/// of another length than the last starts the average over and is itself the result, as it is.
/// `fast` and `slow` are exponential with 0.125 s and 1 s, `infinite` is the mean over all the
/// time since it was reset, `none` the frame alone.
void smoothLevels(const SpectrumFrame& frame, SpectrumAverage& average, TimeWeighting timeWeighting,
                  double elapsedSeconds, std::span<double> smoothedDB);

/// The same for a frame given as levels.
void smoothedLevelsDB(std::span<const double> newLevelsDB, SpectrumAverage& average,
                      TimeWeighting timeWeighting, double elapsedSeconds,
                      std::span<double> smoothedDB);

}  // namespace TarvaneKit
