#include "Metrics/ReferenceTone.h"

#include <cmath>

#include "DSP/PeakPicker.h"

namespace TarvaneKit {

namespace {

// A calibrator's tone is 20 dB and more above the noise in its coupler (IEC 60942 allows it a
// distortion and noise of 3 to 4 %), a lone voice or a hum among music is not.
constexpr PeakPicker::Configuration toneSearch{.minFrequencyHz = 60.0,
                                               .maxFrequencyHz = 16000.0,
                                               .prominenceThresholdDB = 20.0,
                                               .minPeakLevelDB = -300.0,
                                               .noiseFloorWindowHz = 400.0,
                                               .noiseFloorGuardHz = 50.0,
                                               .maxPeaks = 1};

}  // namespace

std::optional<double> ReferenceTone::calibratorFrequencyHz() const {
    for (const double nominalHz : calibratorFrequenciesHz) {
        if (frequencyHz && std::abs(*frequencyHz - nominalHz) <= frequencyTolerance * nominalHz) {
            return nominalHz;
        }
    }
    return std::nullopt;
}

std::optional<double> ReferenceTone::strongestToneHz(std::span<const double> levelsDB,
                                                     double sampleRate, int fftSize) {
    const auto peaks = PeakPicker::findPeaks(levelsDB, sampleRate, fftSize, toneSearch);
    return peaks.empty() ? std::nullopt : std::optional(peaks.front().frequencyHz);
}

}  // namespace TarvaneKit
