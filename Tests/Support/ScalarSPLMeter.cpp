#include "Support/ScalarSPLMeter.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

namespace TarvaneKit::Testing {

ScalarSPLMeter::ScalarSPLMeter(double sampleRate)
    : sampleRate_(sampleRate),
      segmentLength_(static_cast<int>(std::round(sampleRate / 10.0))),
      filters_{design(Weighting::a, sampleRate), design(Weighting::c, sampleRate),
               design(Weighting::z, sampleRate)} {}

ScalarSPLMeter::Filter ScalarSPLMeter::design(Weighting weighting, double sampleRate) {
    // IEC 61672-1, annex E.
    constexpr double f1 = 20.598997;
    constexpr double f2 = 107.65265;
    constexpr double f3 = 737.86223;
    constexpr double f4 = 12194.217;
    const double twoFs = 2.0 * sampleRate;
    const auto prewarped = [&](double f) {
        return twoFs * std::tan(std::numbers::pi * f / sampleRate);
    };
    const auto high = [&](double f) {
        const double k = prewarped(f);
        return Section{twoFs / (k + twoFs), -twoFs / (k + twoFs), (k - twoFs) / (k + twoFs)};
    };
    const auto low = [&](double f) {
        const double k = prewarped(f);
        return Section{1.0 / (k + twoFs), 1.0 / (k + twoFs), (k - twoFs) / (k + twoFs)};
    };
    Filter filter;
    switch (weighting) {
        case Weighting::a:
            filter.sections = {high(f1), high(f1), high(f4), high(f4), low(f2), low(f3)};
            break;
        case Weighting::c:
            filter.sections = {high(f1), high(f1), low(f4), low(f4)};
            break;
        case Weighting::z:
            return filter;
    }
    const auto w = std::polar(1.0, -2.0 * std::numbers::pi * 1000.0 / sampleRate);
    double magnitude = 1.0;
    for (const Section& section : filter.sections) {
        magnitude *= std::abs((section.b0 + section.b1 * w) / (1.0 + section.a1 * w));
    }
    filter.gain = 1.0 / magnitude;
    return filter;
}

void ScalarSPLMeter::addLeq(Weighting weighting) {
    leqs_.push_back({weighting});
}

void ScalarSPLMeter::resetDetectors() {
    levels_ = {};
    peaks_ = {};
}

void ScalarSPLMeter::processBlock(std::span<const float> samples) {
    if (samples.empty()) {
        return;
    }
    const double g = std::pow(10.0, offsetDB_ / 20.0);
    scaled_.resize(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        scaled_[i] = static_cast<double>(samples[i]) * g;
    }
    weighted_.resize(samples.size());
    for (std::size_t w = 0; w < filters_.size(); ++w) {
        for (std::size_t i = 0; i < scaled_.size(); ++i) {
            double x = scaled_[i];
            for (Section& section : filters_[w].sections) {
                const double y = section.b0 * x + section.b1 * section.x1 - section.a1 * section.y1;
                section.x1 = x;
                section.y1 = y;
                x = y;
            }
            weighted_[i] = x * filters_[w].gain;
        }
        for (const TimeWeighting timeWeighting : allCases<TimeWeighting>()) {
            updateLevel(levels_[w][static_cast<std::size_t>(timeWeighting)], timeWeighting);
        }
        updatePeak(peaks_[w]);
        for (Leq& leq : leqs_) {
            if (leq.weighting == static_cast<Weighting>(w)) {
                for (const double sample : weighted_) {
                    leq.sumOfSquares += sample * sample;
                }
                leq.elapsedSeconds += static_cast<double>(weighted_.size()) / sampleRate_;
            }
        }
    }
}

void ScalarSPLMeter::updateLevel(Level& level, TimeWeighting timeWeighting) const {
    const double n = static_cast<double>(weighted_.size());
    double sum = 0.0;
    for (const double sample : weighted_) {
        sum += sample * sample;
    }
    const double m = sum / n;
    switch (timeWeighting) {
        case TimeWeighting::fast:
            level.meanSquare +=
                (1.0 - std::exp(-(n / sampleRate_) / 0.125)) * (m - level.meanSquare);
            break;
        case TimeWeighting::slow:
            level.meanSquare += (1.0 - std::exp(-(n / sampleRate_) / 1.0)) * (m - level.meanSquare);
            break;
        case TimeWeighting::infinite:
            level.meanSquare = (m * n + level.meanSquare * level.count) / (level.count + n);
            level.count += n;
            break;
        case TimeWeighting::none:
            level.meanSquare = m;
            break;
    }
}

void ScalarSPLMeter::updatePeak(Peak& peak) const {
    for (const double sample : weighted_) {
        double& maximum = peak.maxima[static_cast<std::size_t>(peak.current)];
        maximum = std::max(maximum, std::abs(sample));
        if (++peak.samples == segmentLength_) {
            peak.current = (peak.current + 1) % 10;
            peak.maxima[static_cast<std::size_t>(peak.current)] = 0.0;
            peak.samples = 0;
        }
    }
}

double ScalarSPLMeter::levelDB(Weighting weighting, TimeWeighting timeWeighting) const {
    const Level& level =
        levels_[static_cast<std::size_t>(weighting)][static_cast<std::size_t>(timeWeighting)];
    return 20.0 * std::log10(std::max(std::sqrt(level.meanSquare), 1e-12));
}

double ScalarSPLMeter::peakDB(Weighting weighting) const {
    const Peak& peak = peaks_[static_cast<std::size_t>(weighting)];
    return 20.0 * std::log10(std::max(*std::ranges::max_element(peak.maxima), 1e-12));
}

double ScalarSPLMeter::leqDB(int index) const {
    const Leq& leq = leqs_[static_cast<std::size_t>(index)];
    if (!(leq.elapsedSeconds > 0.0)) {
        return -std::numeric_limits<double>::infinity();
    }
    return 10.0 *
           std::log10(std::max(leq.sumOfSquares / (leq.elapsedSeconds * sampleRate_), 1e-24));
}

}  // namespace TarvaneKit::Testing
