// A spectrum's levels at the logarithmic frequencies of a spectrogram's columns.
//
// A column is read between two neighbouring lines. At the top of the range the columns lie many
// lines apart, so that most lines are read by no column; `SpectrogramColumns` knows which are,
// and a caller that has only those does a quarter of the work for the same row.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace TarvaneKit {

/// What a row reads without any line.
inline constexpr float emptySpectrogramLevelDB = -160.0F;

/// `count` frequencies in equal steps of their logarithm, both ends included; `minHz` alone for a
/// count below 2.
std::vector<double> logSpacedFrequencies(int count, double minHz, double maxHz);

/// The columns of every spectrogram: 1024 from 20 Hz to 20 kHz.
const std::vector<double>& spectrogramFrequencies();

/// Writes the level at each frequency, in a straight line between the two lines beside it, flat
/// beyond the first and the last one.
void spectrogramRow(std::span<const double> lineLevelsDB, std::span<const double> frequencies,
                    double sampleRate, int fftSize, std::span<float> row);

/// Constant after construction; any thread.
class SpectrogramColumns {
  public:
    /// For spectra of `fftSize` / 2 lines, at least one.
    SpectrogramColumns(std::span<const double> frequencies, double sampleRate, int fftSize);

    /// The lines that are read, ascending; the last line of a spectrum may stand there twice.
    std::span<const std::int32_t> lines() const { return lines_; }
    int columnCount() const { return static_cast<int>(positions_.size()); }

    /// The row of a spectrum that is given at `lines()` alone.
    void row(std::span<const double> levelsAtLinesDB, std::span<float> row) const;

  private:
    std::vector<std::int32_t> lines_;
    std::vector<std::int32_t> positions_;  // in `lines_`, of the line at or below each column
    std::vector<double> fractions_;        // of the way to the line after it
};

}  // namespace TarvaneKit
