// The sound level meter as the program runs it: blocks of 256 frames, readings at their ends.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "Metrics/SPLMetricEngine.h"
#include "Support/TestSignals.h"

namespace TarvaneConformance {

using TarvaneKit::SPLMetric;
using TarvaneKit::SPLMetricEngine;
using TarvaneKit::TimeWeighting;
using TarvaneKit::Weighting;
using TarvaneKit::Testing::Samples;

/// What the program asks of the audio server.
constexpr std::size_t blockLength = 256;

/// Of amplitude 1.
inline const double fullScaleSineDB = 10.0 * std::log10(0.5);

template <class AtBlockEnd>
void feed(SPLMetricEngine& engine, std::span<const float> signal, AtBlockEnd atBlockEnd) {
    while (!signal.empty()) {
        const auto block = signal.first(std::min(signal.size(), blockLength));
        engine.processBlock(block);
        atBlockEnd();
        signal = signal.subspan(block.size());
    }
}

inline void feed(SPLMetricEngine& engine, std::span<const float> signal) {
    feed(engine, signal, [] {});
}

inline double fastLevel(const SPLMetricEngine& engine, Weighting weighting) {
    return engine.value(SPLMetric::spl(weighting, TimeWeighting::fast));
}

inline double slowLevel(const SPLMetricEngine& engine, Weighting weighting) {
    return engine.value(SPLMetric::spl(weighting, TimeWeighting::slow));
}

/// The time-averaged level of a weighting is accumulated under its letter.
inline void averageAll(SPLMetricEngine& engine) {
    for (const Weighting weighting : TarvaneKit::allCases<Weighting>()) {
        engine.configureLeq(std::string(rawValue(weighting)), weighting, 1.0);
    }
}

inline double averageLevel(const SPLMetricEngine& engine, Weighting weighting) {
    return engine.value(SPLMetric::leq(std::string(rawValue(weighting))));
}

/// A sine of amplitude 1 whose `seconds` are rounded to whole cycles, so that its mean square is
/// one half, as near as samples go.
inline Samples wholeCycles(double sampleRate, double frequencyHz, double seconds) {
    const double cycles = std::max(1.0, std::round(seconds * frequencyHz));
    return TarvaneKit::Testing::sine(sampleRate, frequencyHz, 1.0, cycles / frequencyHz);
}

/// The time-averaged levels of a steady sine of amplitude 1, for A, C and Z.
struct SteadyLevels {
    double a, c, z;

    double of(Weighting weighting) const {
        return weighting == Weighting::a ? a : weighting == Weighting::c ? c : z;
    }
};

inline SteadyLevels steadyLevels(double sampleRate, double frequencyHz) {
    const Samples tone = wholeCycles(sampleRate, frequencyHz, 1.0);
    SPLMetricEngine engine(sampleRate, {});
    feed(engine, tone);  // the filters settle
    averageAll(engine);
    feed(engine, tone);
    return {averageLevel(engine, Weighting::a), averageLevel(engine, Weighting::c),
            averageLevel(engine, Weighting::z)};
}

}  // namespace TarvaneConformance
