// The A, C and Z frequency weightings as cascades of first-order sections: the one place where
// they are designed. The sound level meter runs them through DSP/Kernels, with the coefficients
// from here; `process` is the same filter one sample at a time.
// IEC 61672-1, 5.4 and annex E (the analog prototypes and their corner frequencies).
// Not thread-safe: one stream of samples, in order.
#pragma once

#include <vector>

#include "DSP/Weighting.h"

namespace TarvaneKit {

/// y[n] = b0 x[n] + b1 x[n-1] - a1 y[n-1].
struct FirstOrderSection {
    double b0 = 0.0;
    double b1 = 0.0;
    double a1 = 0.0;
    double x1 = 0.0;  ///< previous input
    double y1 = 0.0;  ///< previous output

    double process(double sample);
    /// |H| at a frequency in radians per sample.
    double magnitude(double radiansPerSample) const;

    bool operator==(const FirstOrderSection&) const = default;
};

class WeightingFilter {
  public:
    // Corner frequencies in Hz, IEC 61672-1, annex E.
    static constexpr double f1 = 20.598997;
    static constexpr double f2 = 107.65265;
    static constexpr double f3 = 737.86223;
    static constexpr double f4 = 12194.217;

    /// Where in the z plane the pole of a corner frequency lies.
    static double pole(double cornerHz, double sampleRate);

    /// The sample rate is positive.
    WeightingFilter(Weighting weighting, double sampleRate);

    Weighting weighting() const { return weighting_; }
    /// In the order in which they are applied; empty for Z.
    const std::vector<FirstOrderSection>& sections() const { return sections_; }
    /// Linear factor after the last section; makes 0 dB at 1 kHz.
    double gain() const { return gain_; }

    /// Zeroes the state of every section.
    void reset();
    double process(double sample);
    /// From the coefficients, at least -240 dB. The sample rate is that of the evaluation.
    double responseDB(double frequencyHz, double sampleRate) const;

  private:
    double sectionsMagnitude(double radiansPerSample) const;

    Weighting weighting_;
    std::vector<FirstOrderSection> sections_;
    double gain_ = 1.0;
};

}  // namespace TarvaneKit
