#include "DSP/OctaveNormalization.h"

#include "Core/Contract.h"
#include "DSP/Kernels/LevelKernel.h"

namespace TarvaneKit {

namespace {

constexpr double pivotHz = 1000.0;

// Of two neighbouring lines, in units of the pivot.
double lineStep(int fftSize, double sampleRate) {
    return sampleRate / fftSize / pivotHz;
}

}  // namespace

void octaveNormalized(std::span<const double> levelsDB, int fftSize, double sampleRate,
                      std::span<double> normalizedDB) {
    TARVANE_PRECONDITION(fftSize > 0);
    TARVANE_PRECONDITION(levelsDB.size() == normalizedDB.size());
    tiltLevels(levelsDB, lineStep(fftSize, sampleRate), normalizedDB);
}

OctaveTilt::OctaveTilt(int lineCount, int fftSize, double sampleRate)
    : levelsDB_(static_cast<std::size_t>(lineCount), 0.0),
      factors_(static_cast<std::size_t>(lineCount), 1.0) {
    octaveNormalized(levelsDB_, fftSize, sampleRate, levelsDB_);
    for (std::size_t i = 1; i < factors_.size(); ++i) {
        factors_[i] = static_cast<double>(i) * lineStep(fftSize, sampleRate);
    }
}

}  // namespace TarvaneKit
