// Sliding peak of a weighted signal over about the last second (IEC 61672-1, 5.13).
// The window is cut into ten segments, each of which remembers only its maximum, so the peak
// covers between nine and ten segments of the past in constant memory.
// Not thread-safe: the owner's lock covers every call.
#pragma once

#include <array>
#include <span>

namespace TarvaneKit {

class PeakDetector {
  public:
    static constexpr double defaultWindowSeconds = 1.0;
    static constexpr int segmentCount = 10;

    /// The sample rate is positive. A window shorter than ten samples is taken as ten.
    explicit PeakDetector(double sampleRate, double windowSeconds = defaultWindowSeconds);

    int segmentLength() const { return segmentLength_; }
    int currentSegment() const { return currentSegment_; }
    int samplesInCurrentSegment() const { return samplesInCurrentSegment_; }
    /// At least 1.
    int samplesToSegmentEnd() const { return segmentLength_ - samplesInCurrentSegment_; }

    void reset();
    /// An empty block changes nothing.
    void processBlock(std::span<const double> samples);
    /// The same for a run of samples that doesn't reach past `samplesToSegmentEnd()` and whose
    /// largest absolute value is known.
    void advance(double largestMagnitude, int sampleCount);
    /// The largest absolute value.
    double peak() const;
    /// Relative to full scale; -240 dB for silence.
    double peakDB() const;

  private:
    int segmentLength_;
    std::array<double, segmentCount> segmentMaxima_{};
    int currentSegment_ = 0;
    int samplesInCurrentSegment_ = 0;
};

}  // namespace TarvaneKit
