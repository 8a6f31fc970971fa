// Equivalent continuous level of a weighted signal: the mean over everything since the last
// reset (IEC 61672-1, 3.10). The integration time marks progress and stops nothing.
// Not thread-safe: the owner's lock covers every call.
#pragma once

#include <span>

namespace TarvaneKit {

class LeqAccumulator {
  public:
    /// The sample rate is positive.
    LeqAccumulator(double integrationSeconds, double sampleRate);

    double integrationSeconds() const { return integrationSeconds_; }
    /// Starts over.
    void setIntegrationSeconds(double integrationSeconds);
    double sumOfSquares() const { return sumOfSquares_; }
    double elapsedSeconds() const { return elapsedSeconds_; }

    void reset();
    /// An empty block changes nothing.
    void processBlock(std::span<const double> samples);
    /// The same for a block whose sum of squares is known.
    void advance(double blockSumOfSquares, int sampleCount);

    /// Whether a sample has come since the last reset.
    bool hasAudio() const { return elapsedSeconds_ > 0.0; }
    bool isComplete() const { return !(integrationSeconds_ > elapsedSeconds_); }
    /// From 0 to 1; 0 for an integration time of 0.
    double elapsedFraction() const;
    /// In units of full scale squared; 0 before the first sample.
    double meanSquare() const;
    /// Relative to full scale; minus infinity before the first sample, -240 dB for silence.
    double currentLeqDB() const;

  private:
    double integrationSeconds_;
    double sampleRate_;
    double sumOfSquares_ = 0.0;
    double elapsedSeconds_ = 0.0;
};

}  // namespace TarvaneKit
