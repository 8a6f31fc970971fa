// Time-weighted mean square of a weighted signal: the exponential averages Fast and Slow
// (IEC 61672-1, 5.7), the mean since the last reset, and the last block alone.
// A block is one step of the average, exact in its elapsed time.
// Not thread-safe: the owner's lock covers every call.
#pragma once

#include <span>

#include "DSP/Weighting.h"

namespace TarvaneKit {

class LevelDetector {
  public:
    // Time constants in seconds, IEC 61672-1, 5.7.1.
    static constexpr double fastSeconds = 0.125;
    static constexpr double slowSeconds = 1.0;

    /// The sample rate is positive.
    LevelDetector(TimeWeighting timeWeighting, double sampleRate);

    TimeWeighting timeWeighting() const { return timeWeighting_; }
    /// Carries on from the mean square reached.
    void setTimeWeighting(TimeWeighting timeWeighting);
    /// In units of full scale squared.
    double meanSquare() const { return meanSquare_; }
    /// Samples averaged since the last reset; counted by `infinite` alone.
    double sampleCount() const { return sampleCount_; }

    void reset();
    /// An empty block changes nothing.
    void processBlock(std::span<const double> samples);
    /// The same step for a block whose sum of squares is known.
    void advance(double sumOfSquares, int blockSampleCount);
    /// Relative to full scale; -240 dB for silence.
    double levelDB() const;

  private:
    // 1 - exp(-t/tau) for a block, kept since successive blocks mostly have one length.
    double stepFactor(int blockSampleCount, double timeConstantSeconds);

    TimeWeighting timeWeighting_;
    double sampleRate_;
    double meanSquare_ = 0.0;
    double sampleCount_ = 0.0;
    int stepSampleCount_ = 0;
    double stepFactor_ = 0.0;
};

}  // namespace TarvaneKit
