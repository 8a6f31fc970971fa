#include "DSP/TruePeakDetector.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "Core/Contract.h"
#include "Core/SharedTables.h"

namespace TarvaneKit {

namespace {

constexpr double kaiserBeta = 6.0;

// BS.1770-4, annex 2: at least 192 kHz after oversampling.
int oversamplingFactorAt(double sampleRate) {
    if (sampleRate < 96000.0) {
        return 4;
    }
    return sampleRate < 192000.0 ? 2 : 1;
}

// The modified Bessel function of order 0, by its series.
double besselI0(double x) {
    double sum = 1.0;
    double term = 1.0;
    for (int k = 1; k < 50; ++k) {
        const double factor = x / (2.0 * k);
        term *= factor * factor;
        sum += term;
    }
    return sum;
}

double sinc(double samples, double period) {
    if (std::abs(samples) < 1e-9) {
        return 1.0;
    }
    const double x = samples * std::numbers::pi / period;
    return std::sin(x) / x;
}

double kaiser(double position) {
    return std::abs(position) > 1.0
               ? 0.0
               : besselI0(kaiserBeta * std::sqrt(1.0 - position * position)) / besselI0(kaiserBeta);
}

// The prototype at the oversampled rate, dealt out to its phases; phase 0 is a pure delay.
std::vector<double> interpolator(int factor, int taps) {
    if (factor == 1) {
        return {1.0};
    }
    const int length = taps * factor;
    const int centre = taps / 2 * factor;
    std::vector<double> phases(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
        const double t = i - centre;
        const int phase = i % factor;
        const double value = sinc(t, factor) * kaiser(t / (length / 2.0));
        const int index = phase * taps + i / factor;
        phases[static_cast<std::size_t>(index)] = phase == 0 ? (i == centre ? 1.0 : 0.0) : value;
    }
    return phases;
}

std::shared_ptr<const TruePeakTable> sharedTable(int factor, int taps) {
    static SharedTables<std::pair<int, int>, TruePeakTable> tables;
    return tables.get({factor, taps}, [&] {
        return std::make_shared<const TruePeakTable>(factor, taps, interpolator(factor, taps));
    });
}

}  // namespace

TruePeakDetector::TruePeakDetector(double sampleRate, int tapsPerPhase) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
    TARVANE_PRECONDITION(tapsPerPhase >= 1);
    const int factor = oversamplingFactorAt(sampleRate);
    table_ = sharedTable(factor, factor == 1 ? 1 : tapsPerPhase);
    history_.resize(static_cast<std::size_t>(table_->historyLength));
}

void TruePeakDetector::reset() {
    std::ranges::fill(history_, 0.0F);
    resetMax();
}

void TruePeakDetector::resetMax() {
    maxAbs_ = 0.0;
}

void TruePeakDetector::process(double sample) {
    const float narrowed = static_cast<float>(sample);
    processBlock({&narrowed, 1});
}

double TruePeakDetector::processBlock(std::span<const float> samples) {
    const double largest = raise(0.0, samples);
    maxAbs_ = std::max(maxAbs_, largest);
    return largest;
}

double TruePeakDetector::raise(double floor, std::span<const float> samples) {
    return largestTruePeak(*table_, samples, history_, floor);
}

double TruePeakDetector::maxDBTP() const {
    return maxAbs_ > 0.0 ? 20.0 * std::log10(maxAbs_) : -std::numeric_limits<double>::infinity();
}

void TruePeakDetector::setHistory(std::span<const float> history) {
    TARVANE_PRECONDITION(history.size() == history_.size());
    std::ranges::copy(history, history_.begin());
}

}  // namespace TarvaneKit
