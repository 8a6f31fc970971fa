// A line spectrum shown as energy per octave: pink noise lies flat, 1 kHz stays where it is.
#pragma once

#include <span>
#include <vector>

namespace TarvaneKit {

/// Adds 10 log10(f / 1000 Hz) to the level of each line at f = i sampleRate / fftSize; the line
/// at 0 Hz stays. In and out may be the same.
void octaveNormalized(std::span<const double> levelsDB, int fftSize, double sampleRate,
                      std::span<double> normalizedDB);

/// The same as a table, for spectra that are still powers. Constant; any thread.
class OctaveTilt {
  public:
    OctaveTilt(int lineCount, int fftSize, double sampleRate);

    /// To add to a line's level.
    std::span<const double> levelsDB() const { return levelsDB_; }
    /// To multiply a line's power with.
    std::span<const double> factors() const { return factors_; }

  private:
    std::vector<double> levelsDB_;
    std::vector<double> factors_;
};

}  // namespace TarvaneKit
