#include "Metrics/LoudnessMeter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

constexpr double stepSeconds = 0.1;
constexpr int truePeakTapsPerPhase = 24;
constexpr double loudnessOffset = -0.691;   // BS.1770-4, annex 1, equation 2: K's gain at 997 Hz
constexpr double integratedGateLU = -10.0;  // BS.1770-4, annex 1
constexpr double rangeGateLU = -20.0;       // EBU Tech 3342
constexpr double lowPercentile = 10.0;
constexpr double highPercentile = 95.0;

// Digital silence, in which the filters go on ringing far below any converter's noise.
constexpr double silenceLUFS = -200.0;

// Minus infinity for no energy, or silence.
double loudness(std::optional<double> energy) {
    const double l = energy && *energy > 0.0 ? loudnessOffset + 10.0 * std::log10(*energy)
                                             : LoudnessReadings::noValue;
    return l > silenceLUFS ? l : LoudnessReadings::noValue;
}

}  // namespace

LoudnessMeter::Channel::Channel(double sampleRate)
    : filter(sampleRate),
      truePeak(sampleRate, truePeakTapsPerPhase),
      truePeakPast(truePeak.history().begin(), truePeak.history().end()) {}

LoudnessMeter::LoudnessMeter(double sampleRate, std::vector<double> channelWeights)
    : sampleRate_(sampleRate),
      channelWeights_(std::move(channelWeights)),
      stepLength_(std::max(1, static_cast<int>(std::round(sampleRate * stepSeconds)))) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
    TARVANE_PRECONDITION(!channelWeights_.empty());
    channels_.assign(channelWeights_.size(), Channel(sampleRate));
}

void LoudnessMeter::process(std::span<const std::span<const float>> channels) {
    if (channels.empty()) {
        return;
    }
    const std::size_t frames =
        std::ranges::min(channels, {}, [](const auto& channel) { return channel.size(); }).size();
    if (frames == 0) {
        return;
    }
    channels = channels.first(std::min(channels.size(), channels_.size()));
    integrate(channels, frames);
    updateTruePeak(channels, frames);
}

void LoudnessMeter::settle(std::span<const std::span<const float>> channels) {
    // A floor that nothing exceeds leaves the detector its history alone.
    constexpr double aboveEverything = std::numeric_limits<double>::infinity();
    for (std::size_t c = 0; c < std::min(channels.size(), channels_.size()); ++c) {
        channels_[c].filter.sumOfSquares(channels[c]);
        channels_[c].truePeak.raise(aboveEverything, channels[c]);
    }
}

void LoudnessMeter::integrate(std::span<const std::span<const float>> channels,
                              std::size_t frames) {
    std::size_t position = 0;
    while (position < frames) {
        const std::size_t chunk =
            std::min(static_cast<std::size_t>(stepLength_ - stepFrames_), frames - position);
        for (std::size_t c = 0; c < channels.size(); ++c) {
            stepEnergy_ += channelWeights_[c] *
                           channels_[c].filter.sumOfSquares(channels[c].subspan(position, chunk));
        }
        stepFrames_ += static_cast<int>(chunk);
        position += chunk;
        if (stepFrames_ == stepLength_) {
            const double energy = stepEnergy_ / stepLength_;
            stepEnergy_ = 0.0;
            stepFrames_ = 0;
            const std::lock_guard guard(lock_);
            completeStep(energy);
        }
    }
}

// The maximum so far spares the detectors most of their work, and is the maximum of another
// measurement once a reset comes in between. Then the call's own peak is what counts, and the
// detectors look again, without a floor, at what they have just passed over.
void LoudnessMeter::updateTruePeak(std::span<const std::span<const float>> channels,
                                   std::size_t frames) {
    std::unique_lock guard(lock_);
    const double floor = truePeakMaxLinear_;
    const unsigned resetsBefore = resetCount_;
    guard.unlock();
    for (Channel& channel : channels_) {
        std::ranges::copy(channel.truePeak.history(), channel.truePeakPast.begin());
    }
    double largest = truePeakAbove(floor, channels, frames);
    guard.lock();
    if (resetCount_ != resetsBefore) {
        guard.unlock();
        for (Channel& channel : channels_) {
            channel.truePeak.setHistory(channel.truePeakPast);
        }
        largest = truePeakAbove(0.0, channels, frames);
        guard.lock();
    }
    truePeakMaxLinear_ = std::max(truePeakMaxLinear_, largest);
}

double LoudnessMeter::truePeakAbove(double floor, std::span<const std::span<const float>> channels,
                                    std::size_t frames) {
    double largest = floor;
    for (std::size_t c = 0; c < channels.size(); ++c) {
        largest = channels_[c].truePeak.raise(largest, channels[c].first(frames));
    }
    return largest;
}

void LoudnessMeter::completeStep(double energy) {
    steps_[static_cast<std::size_t>(stepWrite_)] = energy;
    stepWrite_ = (stepWrite_ + 1) % shortTermSteps;
    stepsFilled_ = std::min(shortTermSteps, stepsFilled_ + 1);
    stepsSinceReset_ = std::min(shortTermSteps, stepsSinceReset_ + 1);
    if (stepsFilled_ >= momentarySteps) {
        completeMomentaryBlock();
    }
    if (stepsFilled_ >= shortTermSteps) {
        completeShortTermBlock();
    }
}

void LoudnessMeter::completeMomentaryBlock() {
    const double energy = meanOfNewest(momentarySteps);
    momentaryEnergy_ = energy;
    if (stepsSinceReset_ < momentarySteps || !(energy > 0.0)) {
        return;
    }
    const double l = loudness(energy);
    maxMomentary_ = std::max(maxMomentary_, l);
    if (l >= GatingHistogram::lowestLoudness) {
        integratedHistogram_.add(l, energy);
        cachedIntegrated_.reset();
    }
}

void LoudnessMeter::completeShortTermBlock() {
    const double energy = meanOfNewest(shortTermSteps);
    shortTermEnergy_ = energy;
    if (stepsSinceReset_ < shortTermSteps) {
        return;
    }
    const double l = loudness(energy);
    maxShortTerm_ = std::max(maxShortTerm_, l);
    if (l >= GatingHistogram::lowestLoudness) {
        rangeHistogram_.add(l, energy);
        cachedRange_.reset();
    }
}

double LoudnessMeter::meanOfNewest(int stepCount) const {
    double sum = 0.0;
    for (int age = stepCount; age > 0; --age) {
        sum +=
            steps_[static_cast<std::size_t>((stepWrite_ + shortTermSteps - age) % shortTermSteps)];
    }
    return sum / stepCount;
}

void LoudnessMeter::reset() {
    const std::lock_guard guard(lock_);
    integratedHistogram_ = {};
    rangeHistogram_ = {};
    cachedIntegrated_.reset();
    cachedRange_.reset();
    maxMomentary_ = LoudnessReadings::noValue;
    maxShortTerm_ = LoudnessReadings::noValue;
    stepsSinceReset_ = 0;
    truePeakMaxLinear_ = 0.0;
    ++resetCount_;
}

LoudnessReadings LoudnessMeter::readings() const {
    const std::lock_guard guard(lock_);
    return {.momentary = loudness(momentaryEnergy_),
            .shortTerm = loudness(shortTermEnergy_),
            .integrated = integratedLoudness(),
            .range = loudnessRange(),
            .truePeakMax = truePeakMaxLinear_ > 0.0 ? 20.0 * std::log10(truePeakMaxLinear_)
                                                    : LoudnessReadings::noValue,
            .momentaryMax = maxMomentary_,
            .shortTermMax = maxShortTerm_};
}

double LoudnessMeter::value(LoudnessMetric metric) const {
    return readings()[metric];
}

double LoudnessMeter::integratedLoudness() const {
    if (!cachedIntegrated_) {
        const double gate = loudness(integratedHistogram_.meanEnergy(0)) + integratedGateLU;
        cachedIntegrated_ = loudness(integratedHistogram_.meanEnergy(GatingHistogram::bin(gate)));
    }
    return *cachedIntegrated_;
}

double LoudnessMeter::loudnessRange() const {
    if (!cachedRange_) {
        const double gate = loudness(rangeHistogram_.meanEnergy(0)) + rangeGateLU;
        const int fromBin = GatingHistogram::bin(gate);
        const auto low = rangeHistogram_.percentileLoudness(lowPercentile, fromBin);
        const auto high = rangeHistogram_.percentileLoudness(highPercentile, fromBin);
        cachedRange_ = low && high ? *high - *low : LoudnessReadings::noValue;
    }
    return *cachedRange_;
}

}  // namespace TarvaneKit
