// Arithmetic of spectra, one pass over an array each: between amplitude, power and dB, and what
// is done to powers and levels from one frame to the next. 64-bit, in place where in and out
// may be the same array. Called by SpectrumSmoothing and its neighbours.
#pragma once

namespace TarvaneKit {

/// A level's lowest power, a positive normal number, and that power's level in dB, which is what
/// it and NaN read exactly.
struct LevelFloor {
    double power;
    double levelDB;
};

/// powers[i] = max(amplitudes[i]^2, floorPower); NaN counts as the floor.
void squareAmplitudes(const float* amplitudes, double floorPower, double* powers, int count);
/// 10 log10, within 8e-16 of itself; in place allowed. Powers are below infinity.
void levelsOfPowers(const double* powers, LevelFloor floor, double* levelsDB, int count);
/// 10^(dB / 10), within 5e-16 of itself from -3070 to 3080 dB and flat beyond; NaN counts as the
/// lower end.
void powersOfLevels(const double* levelsDB, double* powers, int count);
/// levelsDB[i] + 10 log10(i frequencyStep) for i from 1 on; entry 0 as it is. The step is
/// above 0. In place allowed.
void tiltLevels(const double* levelsDB, double frequencyStep, double* tiltedDB, int count);
/// out[i] = a[i] + b[i], in place allowed.
void add(const double* a, const double* b, double* out, int count);
/// out[i] = a[i] b[i], in place allowed.
void multiply(const double* a, const double* b, double* out, int count);
/// out[i] = a[i] b[i], in place allowed; at most the largest number, NaN as 0.
void multiplyFinite(const float* a, const float* b, float* out, int count);
/// out[i] = sqrt(a[i]^2 + b[i]^2) sqrt(1/2), in place allowed.
void rootMeanSquare(const float* a, const float* b, float* out, int count);

/// average[i] += share (values[i] - average[i]).
void moveTowards(const double* values, double share, double* average, int count);
/// The same with one share where the value is not below the average, another where it is.
void followLevels(const double* values, double riseShare, double fallShare, double* average,
                  int count);
/// held[i] = values[i] if that is above held[i], else held[i] - fallDB.
void holdLevels(const double* valuesDB, double fallDB, double* heldDB, int count);

}  // namespace TarvaneKit
