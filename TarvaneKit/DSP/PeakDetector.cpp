#include "DSP/PeakDetector.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"
#include "DSP/AmplitudeLevel.h"

namespace TarvaneKit {

PeakDetector::PeakDetector(double sampleRate, double windowSeconds)
    : segmentLength_(
          std::max(1, static_cast<int>(std::round(sampleRate * windowSeconds / segmentCount)))) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
}

void PeakDetector::reset() {
    segmentMaxima_.fill(0.0);
    currentSegment_ = 0;
    samplesInCurrentSegment_ = 0;
}

void PeakDetector::processBlock(std::span<const double> samples) {
    while (!samples.empty()) {
        const auto run = samples.first(
            std::min(samples.size(), static_cast<std::size_t>(samplesToSegmentEnd())));
        double largest = 0.0;
        for (const double sample : run) {
            const double magnitude = std::abs(sample);
            if (largest < magnitude) {
                largest = magnitude;
            }
        }
        advance(largest, static_cast<int>(run.size()));
        samples = samples.subspan(run.size());
    }
}

void PeakDetector::advance(double largestMagnitude, int sampleCount) {
    TARVANE_PRECONDITION(sampleCount <= samplesToSegmentEnd());
    double& maximum = segmentMaxima_[static_cast<std::size_t>(currentSegment_)];
    if (maximum < largestMagnitude) {
        maximum = largestMagnitude;
    }
    samplesInCurrentSegment_ += sampleCount;
    if (samplesInCurrentSegment_ == segmentLength_) {
        currentSegment_ = (currentSegment_ + 1) % segmentCount;
        segmentMaxima_[static_cast<std::size_t>(currentSegment_)] = 0.0;
        samplesInCurrentSegment_ = 0;
    }
}

double PeakDetector::peak() const {
    return *std::ranges::max_element(segmentMaxima_);
}

double PeakDetector::peakDB() const {
    return amplitudeLevelDB(peak());
}

}  // namespace TarvaneKit
