#include "ChannelProcessor.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Core/FlushDenormals.h"
#include "DSP/Kernels/SanitizeKernel.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

constexpr double noValue = -std::numeric_limits<double>::infinity();

// The largest block that PipeWire's stock configuration allows.
constexpr std::size_t expectedLargestBlock = 8192;

void makeRoom(std::vector<float>& block, std::size_t frames) {
    if (block.size() < frames) {
        block.resize(frames);
    }
}

}  // namespace

ChannelProcessor::ChannelProcessor(const UUID& channelID, bool stereo)
    : id(channelID),
      isStereo(stereo),
      leftBlock_(expectedLargestBlock),
      rightBlock_(stereo ? expectedLargestBlock : 0) {}

void ChannelProcessor::configure(const Configuration& configuration) {
    const auto makeEngine = [&] {
        auto engine = std::make_unique<Engine>(configuration.sampleRate, configuration.calibration);
        engine->configureLeq(userLeqID, configuration.leqWeighting,
                             configuration.leqIntegrationSeconds);
        return engine;
    };
    auto left = makeEngine();
    auto right = isStereo ? makeEngine() : nullptr;
    RollingBuffer accumulated;
    RollingBuffer accumulatedRight;
    accumulated.allocate();
    if (isStereo) {
        accumulatedRight.allocate();
    }

    const std::lock_guard hold(bufferLock_);
    sampleRate_ = configuration.sampleRate;
    accumulated_ = std::move(accumulated);
    accumulatedRight_ = std::move(accumulatedRight);
    leftEngine_ = std::move(left);
    rightEngine_ = std::move(right);
    isConfigured_ = true;
}

void ChannelProcessor::ingest(const float* left, const float* right, int frameCount) {
    if (frameCount <= 0) {
        return;
    }
    const TarvaneKit::FlushDenormals flush;
    const auto frames = static_cast<std::size_t>(frameCount);
    const bool hasRight = isStereo && right != nullptr;
    makeRoom(leftBlock_, frames);
    float peak = TarvaneKit::copySanitized(left, leftBlock_.data(), frameCount);
    if (hasRight) {
        makeRoom(rightBlock_, frames);
        peak = std::max(peak, TarvaneKit::copySanitized(right, rightBlock_.data(), frameCount));
    }
    const std::span<const float> leftBlock(leftBlock_.data(), frames);
    const std::span<const float> rightBlock(rightBlock_.data(), hasRight ? frames : 0);

    Engines meters;
    {
        const std::lock_guard hold(bufferLock_);
        if (dropsIncomingAudio_ || !isConfigured_) {
            return;
        }
        meters = {leftEngine_.get(), rightEngine_.get()};
        accumulated_.append(leftBlock);
        if (hasRight) {
            accumulatedRight_.append(rightBlock);
        } else if (isStereo) {
            accumulatedRight_.appendSilence(frameCount);
        }
        peakSinceLastTick_ = std::max(peakSinceLastTick_, peak);
    }
    meters.left->processBlock(leftBlock);
    if (hasRight && meters.right != nullptr) {
        meters.right->processBlock(rightBlock);
    }
}

ChannelProcessor::Engines ChannelProcessor::engines() const {
    const std::lock_guard hold(bufferLock_);
    return {leftEngine_.get(), rightEngine_.get()};
}

bool ChannelProcessor::isConfigured() const {
    const std::lock_guard hold(bufferLock_);
    return isConfigured_;
}

double ChannelProcessor::combine(const SPLMetric& metric, double left, double right) {
    if (std::holds_alternative<SPLMetric::Peak>(metric.reading)) {
        return std::max(left, right);
    }
    if (!std::isfinite(left) && !std::isfinite(right)) {
        return std::max(left, right);
    }
    const auto power = [](double levelDB) {
        return std::isfinite(levelDB) ? std::pow(10.0, levelDB / 10.0) : 0.0;
    };
    return 10.0 * std::log10((power(left) + power(right)) / 2.0);
}

double ChannelProcessor::value(const SPLMetric& metric) const {
    const Engines meters = engines();
    if (meters.left == nullptr) {
        return noValue;
    }
    const double left = meters.left->value(metric);
    return meters.right == nullptr ? left : combine(metric, left, meters.right->value(metric));
}

std::vector<double> ChannelProcessor::values(std::span<const SPLMetric> metrics) const {
    const Engines meters = engines();
    if (meters.left == nullptr) {
        return std::vector<double>(metrics.size(), noValue);
    }
    std::vector<double> result = meters.left->values(metrics);
    if (meters.right != nullptr) {
        const std::vector<double> right = meters.right->values(metrics);
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i] = combine(metrics[i], result[i], right[i]);
        }
    }
    return result;
}

std::optional<std::vector<double>> ChannelProcessor::sideValues(const SPLMetric& metric) const {
    const Engines meters = engines();
    if (meters.left == nullptr || meters.right == nullptr) {
        return std::nullopt;
    }
    return std::vector{meters.left->value(metric), meters.right->value(metric)};
}

double ChannelProcessor::leqElapsedFraction() const {
    const Engines meters = engines();
    const auto progress =
        meters.left != nullptr ? meters.left->leqProgress(userLeqID) : std::nullopt;
    return progress ? progress->elapsedFraction : 0.0;
}

void ChannelProcessor::setDropsIncomingAudio(bool drops) {
    const std::lock_guard hold(bufferLock_);
    dropsIncomingAudio_ = drops;
}

void ChannelProcessor::resumeAfterPause() {
    const std::lock_guard hold(bufferLock_);
    dropsIncomingAudio_ = false;
    accumulated_.clear();
    accumulatedRight_.clear();
    peakSinceLastTick_ = 0.0F;
}

void ChannelProcessor::setCalibration(const CalibrationProfile& calibration) {
    const Engines meters = engines();
    for (Engine* engine : {meters.left, meters.right}) {
        if (engine != nullptr) {
            engine->setCalibration(calibration);
        }
    }
}

void ChannelProcessor::configureLeq(Weighting weighting, double integrationSeconds) {
    const Engines meters = engines();
    for (Engine* engine : {meters.left, meters.right}) {
        if (engine != nullptr) {
            engine->configureLeq(userLeqID, weighting, integrationSeconds);
        }
    }
}

void ChannelProcessor::resetPeakDetectors() {
    const Engines meters = engines();
    for (Engine* engine : {meters.left, meters.right}) {
        if (engine != nullptr) {
            engine->resetPeakDetectors();
        }
    }
}

ChannelFrame ChannelProcessor::analyze(const AnalysisSettings&, const ChannelAnalysisRequest&) {
    const std::lock_guard hold(bufferLock_);
    return {.peak = std::exchange(peakSinceLastTick_, 0.0F)};
}

int ChannelProcessor::accumulatedCount() const {
    const std::lock_guard hold(bufferLock_);
    return accumulated_.count();
}

int ChannelProcessor::accumulatedRightCount() const {
    const std::lock_guard hold(bufferLock_);
    return accumulatedRight_.count();
}

}  // namespace TarvaneApp
