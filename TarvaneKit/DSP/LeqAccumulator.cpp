#include "DSP/LeqAccumulator.h"

#include <algorithm>
#include <limits>

#include "Core/Contract.h"
#include "DSP/AmplitudeLevel.h"

namespace TarvaneKit {

LeqAccumulator::LeqAccumulator(double integrationSeconds, double sampleRate)
    : integrationSeconds_(integrationSeconds), sampleRate_(sampleRate) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
}

void LeqAccumulator::setIntegrationSeconds(double integrationSeconds) {
    integrationSeconds_ = integrationSeconds;
    reset();
}

void LeqAccumulator::reset() {
    sumOfSquares_ = 0.0;
    elapsedSeconds_ = 0.0;
}

void LeqAccumulator::processBlock(std::span<const double> samples) {
    double blockSumOfSquares = 0.0;
    for (const double sample : samples) {
        blockSumOfSquares += sample * sample;
    }
    advance(blockSumOfSquares, static_cast<int>(samples.size()));
}

void LeqAccumulator::advance(double blockSumOfSquares, int sampleCount) {
    if (sampleCount == 0) {
        return;
    }
    sumOfSquares_ += blockSumOfSquares;
    elapsedSeconds_ += sampleCount / sampleRate_;
}

double LeqAccumulator::elapsedFraction() const {
    return integrationSeconds_ > 0.0 ? std::min(elapsedSeconds_ / integrationSeconds_, 1.0) : 0.0;
}

double LeqAccumulator::meanSquare() const {
    return hasAudio() ? sumOfSquares_ / (elapsedSeconds_ * sampleRate_) : 0.0;
}

double LeqAccumulator::currentLeqDB() const {
    if (!hasAudio()) {
        return -std::numeric_limits<double>::infinity();
    }
    return powerLevelDB(meanSquare());
}

}  // namespace TarvaneKit
