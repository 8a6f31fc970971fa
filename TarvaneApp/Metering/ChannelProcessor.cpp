#include "Metering/ChannelProcessor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "Core/AlignedVector.h"
#include "Core/FlushDenormals.h"
#include "DSP/Kernels/SanitizeKernel.h"
#include "Metrics/SPLHistoryRecorder.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::LoudnessMeter;
using TarvaneKit::LoudnessReadings;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

constexpr double noValue = -std::numeric_limits<double>::infinity();

// The largest block that PipeWire's stock configuration allows.
constexpr std::size_t expectedLargestBlock = 8192;

// Both poles of the A and C weightings at 20.6 Hz (IEC 61672-1, annex E) have forgotten a step down
// to -90 dB by then, and K's high-pass at 38 Hz sooner.
constexpr double settlingSeconds = 0.1;

void makeRoom(std::vector<float>& block, std::size_t frames) {
    if (block.size() < frames) {
        block.resize(frames);
    }
}

// Of both sides' powers. Minus infinity where neither side has one.
double combinedLevelDB(const SPLMetric& metric, double left, double right) {
    const bool isPeak = std::holds_alternative<SPLMetric::Peak>(metric.reading);
    return 10.0 * std::log10(isPeak ? std::max(left, right) : (left + right) / 2.0);
}

}  // namespace

ChannelProcessor::ChannelProcessor(const UUID& channelID, bool stereo)
    : id(channelID),
      isStereo(stereo),
      leftBlock_(expectedLargestBlock),
      rightBlock_(stereo ? expectedLargestBlock : 0),
      reading_(recordedMetrics().size()),
      rightReading_(stereo ? recordedMetrics().size() : 0) {}

void ChannelProcessor::configure(const Configuration& configuration) {
    const auto makeMeter = [&] {
        auto meter =
            std::make_unique<LevelMeter>(configuration.sampleRate, configuration.calibration);
        meter->configureLeq(userLeqID, configuration.leqWeighting,
                            configuration.leqIntegrationSeconds);
        return meter;
    };
    auto analysis = std::make_unique<ChannelAnalysis>(
        ChannelAnalysis::Configuration{.sampleRate = configuration.sampleRate,
                                       .calibration = configuration.calibration,
                                       .ringOutSensitivity = configuration.ringOutSensitivity});
    auto left = makeMeter();
    auto right = isStereo ? makeMeter() : nullptr;
    auto readings =
        std::make_unique<LevelReadings>(recordedMetrics().size(), configuration.sampleRate);
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
    leftMeter_ = std::move(left);
    rightMeter_ = std::move(right);
    analysis_ = std::move(analysis);
    readings_ = std::move(readings);
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
    const auto sanitized = [frames](const float* in, std::vector<float>& out) {
        return TarvaneKit::copySanitized({in, frames}, std::span(out).first(frames));
    };
    float peak = sanitized(left, leftBlock_);
    if (hasRight) {
        makeRoom(rightBlock_, frames);
        peak = std::max(peak, sanitized(right, rightBlock_));
    }
    const std::span<const float> leftBlock(leftBlock_.data(), frames);
    if (isStereo && !hasRight) {
        makeRoom(rightBlock_, frames);
        std::fill_n(rightBlock_.begin(), frames, 0.0F);
    }
    const std::span<const float> rightBlock(rightBlock_.data(), isStereo ? frames : 0);

    LevelMeters meters;
    std::shared_ptr<LoudnessMeter> loudness;
    {
        const std::lock_guard hold(bufferLock_);
        if (dropsIncomingAudio_ || !isConfigured_) {
            return;
        }
        meters = {leftMeter_.get(), rightMeter_.get()};
        loudness = loudnessMeter_;
        accumulated_.append(leftBlock);
        if (isStereo) {
            accumulatedRight_.append(rightBlock);
        }
        peakSinceLastTick_ = std::max(peakSinceLastTick_, peak);
    }
    const std::size_t settling = std::min(settlingFrames_, frames);
    if (settling > 0) {
        settlingFrames_ -= settling;
        settle(meters, loudness.get(), leftBlock.first(settling),
               rightBlock.first(isStereo ? settling : 0));
    }
    if (settling < frames) {
        heardFrames_ += frames - settling;
        measure(meters, loudness.get(), leftBlock.subspan(settling),
                rightBlock.subspan(isStereo ? settling : 0), hasRight);
    }
}

void ChannelProcessor::measure(const LevelMeters& meters, LoudnessMeter* loudness,
                               std::span<const float> left, std::span<const float> right,
                               bool hasRight) {
    meters.left->processBlock(left);
    if (hasRight && meters.right != nullptr) {
        meters.right->processBlock(right);
    }
    if (loudness != nullptr) {
        const std::array channels{left, right};
        loudness->process(std::span(channels).first(isStereo ? 2 : 1));
    }
    if (readings_->advance(static_cast<int>(left.size()))) {
        putReading(meters, loudness);
    }
}

void ChannelProcessor::settle(const LevelMeters& meters, LoudnessMeter* loudness,
                              std::span<const float> left, std::span<const float> right) {
    meters.left->settle(left);
    if (meters.right != nullptr) {
        meters.right->settle(right);
    }
    if (loudness != nullptr) {
        const std::array channels{left, right};
        loudness->settle(std::span(channels).first(isStereo ? 2 : 1));
    }
    readings_->skip(static_cast<std::int64_t>(left.size()));
}

void ChannelProcessor::skip(std::int64_t frameCount) {
    LevelMeters meters;
    std::shared_ptr<LoudnessMeter> loudness;
    {
        const std::lock_guard hold(bufferLock_);
        if (dropsIncomingAudio_ || !isConfigured_) {
            return;
        }
        meters = {leftMeter_.get(), rightMeter_.get()};
        loudness = loudnessMeter_;
        // A spectrum across the hole would show its click at all frequencies.
        accumulated_.clear();
        accumulatedRight_.clear();
    }
    if (readings_->hasUnread()) {
        putReading(meters, loudness.get());
    }
    readings_->noteHole(frameCount);
    // Holes that follow each other closely would leave nothing to measure.
    const auto settling = static_cast<std::size_t>(settlingSeconds * sampleRate_);
    if (heardFrames_ >= settling) {
        settlingFrames_ = settling;
        heardFrames_ = 0;
    }
}

void ChannelProcessor::putReading(const LevelMeters& meters, const LoudnessMeter* loudness) {
    read(recordedMetrics(), meters, loudness, reading_, rightReading_);
    readings_->put(reading_);
}

LevelReadings::Taken ChannelProcessor::takeReadings(LevelReadings::Taken recycled) {
    LevelReadings::Taken taken = std::move(recycled);
    taken.clear();
    const LevelMeters meters = levelMeters();
    if (meters.left == nullptr) {
        return taken;
    }
    readings_->take(taken);
    if (taken.unreadFrames > 0) {
        const std::size_t first = taken.values.size();
        const std::size_t count = recordedMetrics().size();
        taken.readings.push_back(
            {.endFrame = taken.frame, .frameCount = taken.unreadFrames, .firstValue = first});
        taken.values.resize(first + 2 * count);  // with the right side's scratch
        const std::span now = std::span(taken.values).subspan(first);
        read(recordedMetrics(), meters, loudnessMeter().get(), now.first(count), now.last(count));
        taken.values.resize(first + count);
    }
    return taken;
}

const std::vector<SPLMetric>& ChannelProcessor::recordedMetrics() {
    static const std::vector metrics = TarvaneKit::SPLHistoryRecorder::standardMetrics(userLeqID);
    return metrics;
}

ChannelProcessor::LevelMeters ChannelProcessor::levelMeters() const {
    const std::lock_guard hold(bufferLock_);
    return {leftMeter_.get(), rightMeter_.get()};
}

std::shared_ptr<LoudnessMeter> ChannelProcessor::loudnessMeter() const {
    const std::lock_guard hold(bufferLock_);
    return loudnessMeter_;
}

bool ChannelProcessor::isConfigured() const {
    const std::lock_guard hold(bufferLock_);
    return isConfigured_;
}

double ChannelProcessor::value(const SPLMetric& metric) const {
    const LevelMeters meters = levelMeters();
    if (meters.left == nullptr) {
        return noValue;
    }
    double result = noValue;
    double right = noValue;
    read({&metric, 1}, meters, loudnessMeter().get(), {&result, 1}, {&right, 1});
    return result;
}

std::vector<double> ChannelProcessor::values(std::span<const SPLMetric> metrics) const {
    const LevelMeters meters = levelMeters();
    if (meters.left == nullptr) {
        return std::vector<double>(metrics.size(), noValue);
    }
    std::vector<double> result(metrics.size());
    std::vector<double> right(meters.right != nullptr ? metrics.size() : 0);
    read(metrics, meters, loudnessMeter().get(), result, right);
    return result;
}

void ChannelProcessor::read(std::span<const SPLMetric> metrics, const LevelMeters& meters,
                            const LoudnessMeter* loudness, std::span<double> result,
                            std::span<double> right) {
    if (meters.right == nullptr) {
        meters.left->values(metrics, result);
    } else {
        right = right.first(metrics.size());
        meters.left->powers(metrics, result);
        meters.right->powers(metrics, right);
        for (std::size_t i = 0; i < result.size(); ++i) {
            result[i] = combinedLevelDB(metrics[i], result[i], right[i]);
        }
    }
    std::optional<LoudnessReadings> readings;  // read at most once, so that all are of one instant
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (const auto* metric = std::get_if<SPLMetric::Loudness>(&metrics[i].reading)) {
            if (!readings) {
                readings = loudness != nullptr ? loudness->readings() : LoudnessReadings{};
            }
            result[i] = (*readings)[metric->metric];
        }
    }
}

std::optional<std::vector<double>> ChannelProcessor::sideValues(const SPLMetric& metric) const {
    const LevelMeters meters = levelMeters();
    if (meters.left == nullptr || meters.right == nullptr ||
        std::holds_alternative<SPLMetric::Loudness>(metric.reading)) {
        return std::nullopt;
    }
    return std::vector{meters.left->value(metric), meters.right->value(metric)};
}

double ChannelProcessor::leqElapsedFraction() const {
    const LevelMeters meters = levelMeters();
    const auto progress =
        meters.left != nullptr ? meters.left->leqProgress(userLeqID) : std::nullopt;
    return progress ? progress->elapsedFraction : 0.0;
}

bool ChannelProcessor::setMeasuresLoudness(bool measures) {
    if (!isConfigured() || measures == (loudnessMeter() != nullptr)) {
        return false;
    }
    auto meter = measures ? std::make_shared<LoudnessMeter>(
                                sampleRate_, std::vector<double>(isStereo ? 2 : 1, 1.0))
                          : nullptr;
    {
        const std::lock_guard hold(bufferLock_);
        loudnessMeter_.swap(meter);
    }
    if (meter) {
        droppedLoudnessMeter_ = std::move(meter);
    }
    return true;
}

std::optional<LoudnessReadings> ChannelProcessor::loudnessReadings() const {
    const auto meter = loudnessMeter();
    return meter ? std::optional(meter->readings()) : std::nullopt;
}

void ChannelProcessor::resetLoudness() {
    if (const auto meter = loudnessMeter()) {
        meter->reset();
    }
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
    const LevelMeters meters = levelMeters();
    for (LevelMeter* meter : {meters.left, meters.right}) {
        if (meter != nullptr) {
            meter->setCalibration(calibration);
        }
    }
}

void ChannelProcessor::configureLeq(Weighting weighting, double integrationSeconds) {
    const LevelMeters meters = levelMeters();
    for (LevelMeter* meter : {meters.left, meters.right}) {
        if (meter != nullptr) {
            meter->configureLeq(userLeqID, weighting, integrationSeconds);
        }
    }
}

void ChannelProcessor::resetPeakDetectors() {
    const LevelMeters meters = levelMeters();
    for (LevelMeter* meter : {meters.left, meters.right}) {
        if (meter != nullptr) {
            meter->resetPeakDetectors();
        }
    }
}

ChannelFrame ChannelProcessor::analyze(const AnalysisSettings& settings,
                                       const ChannelAnalysisRequest& request,
                                       ChannelFrame recycled) {
    constexpr int length = ChannelAnalysis::windowLength;
    thread_local TarvaneKit::AlignedVector<float> left(length);
    thread_local TarvaneKit::AlignedVector<float> right(length);
    const bool isWanted = request.wantsRTA || request.wantsSpectrogram;

    ChannelFrame frame = std::move(recycled);
    std::optional<ChannelAnalysis::Window> window;
    {
        const std::lock_guard hold(bufferLock_);
        frame.peak = std::exchange(peakSinceLastTick_, 0.0F);
        if (accumulated_.count() >= length) {
            window.emplace(ChannelAnalysis::Window{.left = left, .right = {}});
            if (isWanted) {
                accumulated_.copyNewest(left);
            }
            if (accumulatedRight_.count() >= length) {
                window->right = right;
                if (isWanted) {
                    accumulatedRight_.copyNewest(right);
                }
                accumulatedRight_.keepNewest(length);
            }
            accumulated_.keepNewest(length);
        }
    }
    if (analysis_) {
        analysis_->analyze(settings, request, window, frame);
    }
    return frame;
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
