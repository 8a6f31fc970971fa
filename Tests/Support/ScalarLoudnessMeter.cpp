#include "Support/ScalarLoudnessMeter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace TarvaneKit::Testing {

namespace {

constexpr double noValue = LoudnessReadings::noValue;

double loudness(double energy) {
    return energy > 0.0 ? -0.691 + 10.0 * std::log10(energy) : noValue;
}

ScalarKWeighting::Biquad shelfAt(double sampleRate) {
    const double k = std::tan(std::numbers::pi * 1681.974450955533 / sampleRate);
    const double q = 0.7071752369554196;
    const double vh = 1.5848647011308556;
    const double vb = 1.2587209302325617;
    const double a0 = 1.0 + k / q + k * k;
    return {(vh + vb * k / q + k * k) / a0, 2.0 * (k * k - vh) / a0, (vh - vb * k / q + k * k) / a0,
            2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

ScalarKWeighting::Biquad highPassAt(double sampleRate) {
    const double k = std::tan(std::numbers::pi * 38.13547087602444 / sampleRate);
    const double q = 0.5003270373238773;
    const double a0 = 1.0 + k / q + k * k;
    return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

double besselI0(double x) {
    double sum = 1.0;
    double term = 1.0;
    for (int k = 1; k <= 49; ++k) {
        term *= (x / (2.0 * k)) * (x / (2.0 * k));
        sum += term;
    }
    return sum;
}

}  // namespace

double ScalarKWeighting::Biquad::process(double x) {
    const double y = b0 * x + z1;
    z1 = z2 + b1 * x - a1 * y;
    z2 = b2 * x - a2 * y;
    return y;
}

ScalarKWeighting::ScalarKWeighting(double sampleRate)
    : shelf(shelfAt(sampleRate)), highPass(highPassAt(sampleRate)) {}

ScalarTruePeak::ScalarTruePeak(double sampleRate, int tapsPerPhase)
    : factor(sampleRate < 96000.0    ? 4
             : sampleRate < 192000.0 ? 2
                                     : 1),
      taps(factor == 1 ? 1 : tapsPerPhase),
      coefficients(static_cast<std::size_t>(factor * taps)),
      history_(static_cast<std::size_t>(2 * taps)) {
    if (factor == 1) {
        coefficients[0] = 1.0;
        return;
    }
    const int n = taps * factor;
    const int centre = (taps / 2) * factor;
    const double half = n / 2.0;
    for (int i = 0; i < n; ++i) {
        const double t = i - centre;
        const double x = t * std::numbers::pi / factor;
        const double s = std::abs(t) < 1e-9 ? 1.0 : std::sin(x) / x;
        const double r = t / half;
        const double w =
            std::abs(r) > 1.0 ? 0.0 : besselI0(6.0 * std::sqrt(1.0 - r * r)) / besselI0(6.0);
        coefficients[static_cast<std::size_t>(i % factor * taps + i / factor)] = s * w;
    }
    for (int j = 0; j < taps; ++j) {
        coefficients[static_cast<std::size_t>(j)] = j * factor == centre ? 1.0 : 0.0;
    }
}

double ScalarTruePeak::processBlock(std::span<const float> samples) {
    double largest = 0.0;
    for (const float sample : samples) {
        const double s = static_cast<double>(sample);
        history_[static_cast<std::size_t>(write_)] = s;
        history_[static_cast<std::size_t>(write_ + taps)] = s;
        write_ = (write_ + 1) % taps;
        largest = std::max(largest, std::abs(s));
        const double* newest = history_.data() + write_ + taps - 1;
        for (int p = 1; p < factor; ++p) {
            const double* c = coefficients.data() + p * taps;
            double a = 0.0;
            for (int j = 0; j < taps; ++j) {
                a += c[j] * newest[-j];
            }
            largest = std::max(largest, std::abs(a));
        }
    }
    return largest;
}

int ScalarLoudnessMeter::Histogram::bin(double l) {
    if (!std::isfinite(l)) {
        return l > 0.0 ? 799 : 0;
    }
    return static_cast<int>(std::clamp(std::floor((l + 70.0) / 0.1), 0.0, 799.0));
}

void ScalarLoudnessMeter::Histogram::add(double l, double energy) {
    counts[static_cast<std::size_t>(bin(l))] += 1;
    energies[static_cast<std::size_t>(bin(l))] += energy;
}

std::optional<double> ScalarLoudnessMeter::Histogram::meanEnergy(int from) const {
    double energy = 0.0;
    long count = 0;
    for (std::size_t i = static_cast<std::size_t>(from); i < 800; ++i) {
        energy += energies[i];
        count += counts[i];
    }
    return count == 0 ? std::nullopt : std::optional(energy / static_cast<double>(count));
}

std::optional<double> ScalarLoudnessMeter::Histogram::percentile(double percent, int from) const {
    long total = 0;
    for (std::size_t i = static_cast<std::size_t>(from); i < 800; ++i) {
        total += counts[i];
    }
    if (total < 1) {
        return std::nullopt;
    }
    const long index =
        std::min(total - 1, std::lround(percent * static_cast<double>(total - 1) / 100.0));
    long sum = 0;
    for (std::size_t i = static_cast<std::size_t>(from); i < 800; ++i) {
        sum += counts[i];
        if (sum > index) {
            return -70.0 + 0.1 * (static_cast<double>(i) + 0.5);
        }
    }
    return std::nullopt;
}

ScalarLoudnessMeter::ScalarLoudnessMeter(double sampleRate, std::vector<double> weights)
    : weights_(std::move(weights)),
      stepLength_(std::max(1, static_cast<int>(std::round(sampleRate * 0.1)))),
      filters_(weights_.size(), ScalarKWeighting(sampleRate)),
      truePeaks_(weights_.size(), ScalarTruePeak(sampleRate, 24)) {}

void ScalarLoudnessMeter::process(std::span<const std::span<const float>> channels) {
    if (channels.empty()) {
        return;
    }
    std::size_t frames = channels[0].size();
    for (const auto& channel : channels) {
        frames = std::min(frames, channel.size());
    }
    const std::size_t used = std::min(channels.size(), weights_.size());
    double largest = 0.0;
    std::size_t position = 0;
    while (position < frames) {
        const std::size_t chunk =
            std::min(static_cast<std::size_t>(stepLength_ - stepFrames_), frames - position);
        for (std::size_t c = 0; c < used; ++c) {
            const auto samples = channels[c].subspan(position, chunk);
            largest = std::max(largest, truePeaks_[c].processBlock(samples));
            double sum = 0.0;
            for (const float sample : samples) {
                const double y = filters_[c].process(static_cast<double>(sample));
                sum += y * y;
            }
            stepEnergy_ += weights_[c] * sum;
        }
        stepFrames_ += static_cast<int>(chunk);
        position += chunk;
        if (stepFrames_ == stepLength_) {
            completeStep(stepEnergy_ / stepLength_);
            stepEnergy_ = 0.0;
            stepFrames_ = 0;
        }
    }
    truePeak_ = std::max(truePeak_, largest);
}

void ScalarLoudnessMeter::completeStep(double energy) {
    steps_.push_back(energy);
    if (steps_.size() > 30) {
        steps_.erase(steps_.begin());
    }
    ++stepsSinceReset_;
    const auto mean = [&](std::size_t count) {
        double sum = 0.0;
        for (std::size_t i = steps_.size() - count; i < steps_.size(); ++i) {
            sum += steps_[i];
        }
        return sum / static_cast<double>(count);
    };
    if (steps_.size() >= 4) {
        momentary_ = mean(4);
        if (stepsSinceReset_ >= 4 && *momentary_ > 0.0) {
            const double l = loudness(*momentary_);
            maxMomentary_ = std::max(maxMomentary_, l);
            if (l >= -70.0) {
                integrated_.add(l, *momentary_);
            }
        }
    }
    if (steps_.size() >= 30) {
        shortTerm_ = mean(30);
        if (stepsSinceReset_ >= 30) {
            const double l = loudness(*shortTerm_);
            maxShortTerm_ = std::max(maxShortTerm_, l);
            if (l >= -70.0) {
                range_.add(l, *shortTerm_);
            }
        }
    }
}

void ScalarLoudnessMeter::reset() {
    integrated_ = {};
    range_ = {};
    maxMomentary_ = noValue;
    maxShortTerm_ = noValue;
    stepsSinceReset_ = 0;
    truePeak_ = 0.0;
}

LoudnessReadings ScalarLoudnessMeter::readings() const {
    LoudnessReadings readings;
    readings.momentary = momentary_ ? loudness(*momentary_) : noValue;
    readings.shortTerm = shortTerm_ ? loudness(*shortTerm_) : noValue;
    if (const auto m0 = integrated_.meanEnergy(0)) {
        if (const auto m1 = integrated_.meanEnergy(Histogram::bin(loudness(*m0) - 10.0))) {
            readings.integrated = loudness(*m1);
        }
    }
    if (const auto m0 = range_.meanEnergy(0)) {
        const int from = Histogram::bin(loudness(*m0) - 20.0);
        const auto low = range_.percentile(10.0, from);
        const auto high = range_.percentile(95.0, from);
        if (low && high) {
            readings.range = *high - *low;
        }
    }
    readings.truePeakMax = truePeak_ > 0.0 ? 20.0 * std::log10(truePeak_) : noValue;
    readings.momentaryMax = maxMomentary_;
    readings.shortTermMax = maxShortTerm_;
    return readings;
}

}  // namespace TarvaneKit::Testing
