#include "DSP/LevelDetector.h"

#include <cmath>

#include "Core/Contract.h"
#include "DSP/AmplitudeLevel.h"

namespace TarvaneKit {

LevelDetector::LevelDetector(TimeWeighting timeWeighting, double sampleRate)
    : timeWeighting_(timeWeighting), sampleRate_(sampleRate) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
}

void LevelDetector::setTimeWeighting(TimeWeighting timeWeighting) {
    timeWeighting_ = timeWeighting;
    stepSampleCount_ = 0;
}

void LevelDetector::reset() {
    meanSquare_ = 0.0;
    sampleCount_ = 0.0;
}

void LevelDetector::processBlock(std::span<const double> samples) {
    double sumOfSquares = 0.0;
    for (const double sample : samples) {
        sumOfSquares += sample * sample;
    }
    advance(sumOfSquares, static_cast<int>(samples.size()));
}

void LevelDetector::advance(double sumOfSquares, int blockSampleCount) {
    if (blockSampleCount == 0) {
        return;
    }
    const double n = blockSampleCount;
    const double blockMeanSquare = sumOfSquares / n;
    switch (timeWeighting_) {
        case TimeWeighting::fast:
            meanSquare_ +=
                stepFactor(blockSampleCount, fastSeconds) * (blockMeanSquare - meanSquare_);
            break;
        case TimeWeighting::slow:
            meanSquare_ +=
                stepFactor(blockSampleCount, slowSeconds) * (blockMeanSquare - meanSquare_);
            break;
        case TimeWeighting::infinite:
            meanSquare_ = (blockMeanSquare * n + meanSquare_ * sampleCount_) / (sampleCount_ + n);
            sampleCount_ += n;
            break;
        case TimeWeighting::none:
            meanSquare_ = blockMeanSquare;
            break;
    }
}

double LevelDetector::levelDB() const {
    return amplitudeLevelDB(std::sqrt(meanSquare_));
}

double LevelDetector::stepFactor(int blockSampleCount, double timeConstantSeconds) {
    if (blockSampleCount != stepSampleCount_) {
        const double elapsedSeconds = blockSampleCount / sampleRate_;
        stepFactor_ = 1.0 - std::exp(-elapsedSeconds / timeConstantSeconds);
        stepSampleCount_ = blockSampleCount;
    }
    return stepFactor_;
}

}  // namespace TarvaneKit
