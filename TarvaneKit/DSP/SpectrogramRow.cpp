#include "DSP/SpectrogramRow.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"
#include "DSP/Kernels/InterpolationKernel.h"

namespace TarvaneKit {

std::vector<double> logSpacedFrequencies(int count, double minHz, double maxHz) {
    if (count < 2) {
        return {minHz};
    }
    const double first = std::log10(minHz);
    const double last = std::log10(maxHz);
    std::vector<double> frequencies(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        frequencies[static_cast<std::size_t>(i)] =
            std::pow(10.0, first + (last - first) * i / (count - 1));
    }
    return frequencies;
}

const std::vector<double>& spectrogramFrequencies() {
    static const std::vector<double> frequencies = logSpacedFrequencies(1024, 20.0, 20000.0);
    return frequencies;
}

void spectrogramRow(std::span<const double> lineLevelsDB, std::span<const double> frequencies,
                    double sampleRate, int fftSize, std::span<float> row) {
    TARVANE_PRECONDITION(row.size() == frequencies.size());
    if (lineLevelsDB.empty()) {
        std::ranges::fill(row, emptySpectrogramLevelDB);
        return;
    }
    interpolateAt(lineLevelsDB, frequencies, fftSize / sampleRate, row);
}

SpectrogramColumns::SpectrogramColumns(std::span<const double> frequencies, double sampleRate,
                                       int fftSize)
    : positions_(frequencies.size()), fractions_(frequencies.size()) {
    const int last = fftSize / 2 - 1;
    TARVANE_PRECONDITION(last >= 0 && sampleRate > 0.0);
    for (std::size_t column = 0; column < frequencies.size(); ++column) {
        const double position =
            std::clamp(frequencies[column] * fftSize / sampleRate, 0.0, static_cast<double>(last));
        const int line = static_cast<int>(std::floor(position));
        positions_[column] = line;
        fractions_[column] = position - line;
        lines_.push_back(line);
        lines_.push_back(line + 1);
    }
    std::ranges::sort(lines_);
    lines_.erase(std::unique(lines_.begin(), lines_.end()), lines_.end());
    for (std::int32_t& position : positions_) {
        position =
            static_cast<std::int32_t>(std::ranges::lower_bound(lines_, position) - lines_.begin());
    }
    // What would follow the last line is the last line.
    std::ranges::transform(lines_, lines_.begin(),
                           [&](std::int32_t line) { return std::min(line, last); });
}

void SpectrogramColumns::row(std::span<const double> levelsAtLinesDB, std::span<float> row) const {
    TARVANE_PRECONDITION(levelsAtLinesDB.size() == lines_.size());
    TARVANE_PRECONDITION(row.size() == positions_.size());
    interpolate(levelsAtLinesDB, positions_, fractions_, row);
}

}  // namespace TarvaneKit
