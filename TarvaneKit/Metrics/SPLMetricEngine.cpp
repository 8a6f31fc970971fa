#include "Metrics/SPLMetricEngine.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Core/Contract.h"
#include "DSP/AmplitudeLevel.h"

namespace TarvaneKit {

namespace {

constexpr double noValue = -std::numeric_limits<double>::infinity();

double linearGain(const CalibrationProfile& calibration) {
    return std::pow(10.0, calibration.broadbandOffsetDB() / 20.0);
}

template <class E>
constexpr std::size_t indexOf(E value) {
    return static_cast<std::size_t>(value);
}

}  // namespace

SPLMetricEngine::WeightedMeters::WeightedMeters(double sampleRate)
    : levels{LevelDetector(TimeWeighting::fast, sampleRate),
             LevelDetector(TimeWeighting::slow, sampleRate),
             LevelDetector(TimeWeighting::infinite, sampleRate),
             LevelDetector(TimeWeighting::none, sampleRate)},
      peak(sampleRate) {}

void SPLMetricEngine::WeightedMeters::reset() {
    for (LevelDetector& level : levels) {
        level.reset();
    }
    peak.reset();
}

SPLMetricEngine::SPLMetricEngine(double sampleRate, CalibrationProfile calibration)
    : calibration_(std::move(calibration)),
      gain_(linearGain(calibration_)),
      sampleRate_(sampleRate),
      weightings_(sampleRate),
      meters_{WeightedMeters(sampleRate), WeightedMeters(sampleRate), WeightedMeters(sampleRate)} {}

CalibrationProfile SPLMetricEngine::calibration() const {
    const std::lock_guard guard(lock_);
    return calibration_;
}

void SPLMetricEngine::setCalibration(CalibrationProfile calibration) {
    const double gain = linearGain(calibration);
    const std::lock_guard guard(lock_);
    std::swap(calibration_, calibration);
    gain_ = gain;
}

void SPLMetricEngine::configureLeq(const std::string& id, Weighting weighting,
                                   double integrationSeconds) {
    const WeightedLeq leq{weighting, LeqAccumulator(integrationSeconds, sampleRate_)};
    const std::lock_guard guard(lock_);
    leqAccumulators_.insert_or_assign(id, leq);
}

void SPLMetricEngine::resetLeq(const std::string& id) {
    const std::lock_guard guard(lock_);
    if (const auto found = leqAccumulators_.find(id); found != leqAccumulators_.end()) {
        found->second.accumulator.reset();
    }
}

void SPLMetricEngine::resetPeakDetectors() {
    const std::lock_guard guard(lock_);
    for (WeightedMeters& meters : meters_) {
        meters.peak.reset();
    }
}

void SPLMetricEngine::resetAllDetectors() {
    const std::lock_guard guard(lock_);
    for (WeightedMeters& meters : meters_) {
        meters.reset();
    }
}

void SPLMetricEngine::processBlock(std::span<const float> samples) {
    if (samples.empty()) {
        return;
    }
    const std::lock_guard guard(lock_);
    const int sampleCount = static_cast<int>(samples.size());
    std::array<double, weightingCount> sumsOfSquares{};
    // The peaks' segments end together, since they are fed and reset together.
    while (!samples.empty()) {
        const std::size_t toSegmentEnd =
            static_cast<std::size_t>(meters_.front().peak.samplesToSegmentEnd());
        const auto run = samples.first(std::min(samples.size(), toSegmentEnd));
        const auto weighted = weightings_.process(run, gain_);
        for (std::size_t weighting = 0; weighting < weightingCount; ++weighting) {
            sumsOfSquares[weighting] += weighted[weighting].sumOfSquares;
            meters_[weighting].peak.advance(weighted[weighting].largestMagnitude,
                                            static_cast<int>(run.size()));
        }
        samples = samples.subspan(run.size());
    }
    for (std::size_t weighting = 0; weighting < weightingCount; ++weighting) {
        for (LevelDetector& level : meters_[weighting].levels) {
            level.advance(sumsOfSquares[weighting], sampleCount);
        }
    }
    for (auto& [id, leq] : leqAccumulators_) {
        leq.accumulator.advance(sumsOfSquares[indexOf(leq.weighting)], sampleCount);
    }
}

void SPLMetricEngine::settle(std::span<const float> samples) {
    const std::lock_guard guard(lock_);
    weightings_.process(samples, gain_);
}

double SPLMetricEngine::value(const SPLMetric& metric) const {
    const std::lock_guard guard(lock_);
    return readingOf(metric);
}

std::vector<double> SPLMetricEngine::values(std::span<const SPLMetric> metrics) const {
    std::vector<double> result(metrics.size());
    values(metrics, result);
    return result;
}

void SPLMetricEngine::values(std::span<const SPLMetric> metrics, std::span<double> result) const {
    TARVANE_PRECONDITION(metrics.size() == result.size());
    const std::lock_guard guard(lock_);
    std::ranges::transform(metrics, result.begin(),
                           [this](const SPLMetric& metric) { return readingOf(metric); });
}

void SPLMetricEngine::powers(std::span<const SPLMetric> metrics, std::span<double> result) const {
    TARVANE_PRECONDITION(metrics.size() == result.size());
    const std::lock_guard guard(lock_);
    std::ranges::transform(metrics, result.begin(),
                           [this](const SPLMetric& metric) { return powerOf(metric); });
}

std::optional<SPLMetricEngine::LeqProgress> SPLMetricEngine::leqProgress(
    const std::string& id) const {
    const std::lock_guard guard(lock_);
    const auto found = leqAccumulators_.find(id);
    if (found == leqAccumulators_.end()) {
        return std::nullopt;
    }
    const LeqAccumulator& accumulator = found->second.accumulator;
    return LeqProgress{accumulator.elapsedFraction(), accumulator.isComplete()};
}

double SPLMetricEngine::readingOf(const SPLMetric& metric) const {
    if (const auto* spl = std::get_if<SPLMetric::SPL>(&metric.reading)) {
        return meters_[indexOf(spl->weighting)].levels[indexOf(spl->timeWeighting)].levelDB();
    }
    if (const auto* peak = std::get_if<SPLMetric::Peak>(&metric.reading)) {
        return meters_[indexOf(peak->weighting)].peak.peakDB();
    }
    if (const auto* leq = std::get_if<SPLMetric::Leq>(&metric.reading)) {
        const auto found = leqAccumulators_.find(leq->id);
        return found == leqAccumulators_.end() ? noValue : found->second.accumulator.currentLeqDB();
    }
    return noValue;
}

double SPLMetricEngine::powerOf(const SPLMetric& metric) const {
    const auto aboveFloor = [](double power) { return power > lowestPower ? power : lowestPower; };
    if (const auto* spl = std::get_if<SPLMetric::SPL>(&metric.reading)) {
        const WeightedMeters& meters = meters_[indexOf(spl->weighting)];
        return aboveFloor(meters.levels[indexOf(spl->timeWeighting)].meanSquare());
    }
    if (const auto* peak = std::get_if<SPLMetric::Peak>(&metric.reading)) {
        const double amplitude = meters_[indexOf(peak->weighting)].peak.peak();
        return aboveFloor(amplitude * amplitude);
    }
    if (const auto* leq = std::get_if<SPLMetric::Leq>(&metric.reading)) {
        const auto found = leqAccumulators_.find(leq->id);
        if (found != leqAccumulators_.end() && found->second.accumulator.hasAudio()) {
            return aboveFloor(found->second.accumulator.meanSquare());
        }
    }
    return 0.0;
}

}  // namespace TarvaneKit
