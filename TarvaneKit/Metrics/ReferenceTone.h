// What is heard where an acoustic calibrator should be: how steady it is, and at which frequency.
// A calibration on anything else would be wrong by as much as that differs, so the user is warned.
//
// Pure functions.
#pragma once

#include <array>
#include <optional>
#include <span>

namespace TarvaneKit {

struct ReferenceTone {
    /// How long a level is watched. A slow meter has then settled.
    static constexpr double observedSeconds = 2.0;
    /// A calibrator's own level moves by a tenth or two (IEC 60942, short-term level fluctuation);
    /// more comes from a microphone that isn't seated or from noise beside the tone.
    static constexpr double largestSpreadDB = 0.5;
    /// Sound calibrators play 1 kHz, pistonphones 250 Hz.
    static constexpr std::array<double, 2> calibratorFrequenciesHz{1000.0, 250.0};
    /// The 2 % that the least exact calibrators may be off (IEC 60942, class 2), and 1 % for the
    /// reading of the frequency from lines 12 Hz apart.
    static constexpr double frequencyTolerance = 0.03;

    /// Largest less smallest level of the time observed.
    double spreadDB = 0.0;
    /// Absent where no tone stands clear of the rest.
    std::optional<double> frequencyHz;

    bool isSteady() const { return spreadDB <= largestSpreadDB; }
    /// The frequency of a calibrator that this can be.
    std::optional<double> calibratorFrequencyHz() const;

    /// The tone that stands highest above what is around it, of a one-sided spectrum with index i
    /// at i times sample rate / FFT size.
    static std::optional<double> strongestToneHz(std::span<const double> levelsDB,
                                                 double sampleRate, int fftSize);
};

}  // namespace TarvaneKit
