// Arithmetic of spectra, one pass over an array each: between amplitude, power and dB, and what
// is done to powers and levels from one frame to the next. 64-bit, in place where in and out
// may be the same array. Called by SpectrumSmoothing and its neighbours. All arrays of a call have
// one length.
#pragma once

#include <span>

namespace TarvaneKit {

/// A level's lowest power, a positive normal number, and that power's level in dB, which is what
/// it and NaN read exactly.
struct LevelFloor {
    double power;
    double levelDB;
};

/// powers[i] = max(amplitudes[i]^2, floorPower); NaN counts as the floor.
void squareAmplitudes(std::span<const float> amplitudes, double floorPower,
                      std::span<double> powers);
/// 10 log10, within 8e-16 of itself; in place allowed. Powers are below infinity.
void levelsOfPowers(std::span<const double> powers, LevelFloor floor, std::span<double> levelsDB);
/// 10^(dB / 10), within 5e-16 of itself from -3070 to 3080 dB and flat beyond; NaN counts as the
/// lower end.
void powersOfLevels(std::span<const double> levelsDB, std::span<double> powers);
/// levelsDB[i] + 10 log10(i frequencyStep) for i from 1 on; entry 0 as it is. The step is
/// above 0. In place allowed.
void tiltLevels(std::span<const double> levelsDB, double frequencyStep, std::span<double> tiltedDB);
/// out[i] = a[i] + b[i], in place allowed.
void add(std::span<const double> a, std::span<const double> b, std::span<double> out);
/// out[i] = a[i] b[i], in place allowed.
void multiply(std::span<const double> a, std::span<const double> b, std::span<double> out);
/// out[i] = a[i] b[i], in place allowed; at most the largest number, NaN as 0.
void multiplyFinite(std::span<const float> a, std::span<const float> b, std::span<float> out);
/// The same with one factor for all.
void scaleFinite(std::span<const float> a, float factor, std::span<float> out);
/// out[i] = sqrt(a[i]^2 + b[i]^2) sqrt(1/2), in place allowed.
void rootMeanSquare(std::span<const float> a, std::span<const float> b, std::span<float> out);

/// average[i] += share (values[i] - average[i]).
void moveTowards(std::span<const double> values, double share, std::span<double> average);
/// The same with one share where the value is not below the average, another where it is.
void followLevels(std::span<const double> values, double riseShare, double fallShare,
                  std::span<double> average);
/// held[i] = values[i] if that is above held[i], else held[i] - fallDB.
void holdLevels(std::span<const double> valuesDB, double fallDB, std::span<double> heldDB);

}  // namespace TarvaneKit
