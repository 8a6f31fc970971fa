// Signals for tests, mono, in 32-bit floats.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

#include "Support/Signals.h"

namespace TarvaneKit::Testing {

using Samples = std::vector<float>;

/// amplitude sin(2 pi f t + phase).
inline Samples sine(double sampleRate, double frequencyHz, double amplitude, double seconds,
                    double phaseDegrees = 0.0) {
    Samples samples(static_cast<std::size_t>(std::llround(seconds * sampleRate)));
    const double phase = phaseDegrees * std::numbers::pi / 180.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double cycles = std::fmod(static_cast<double>(i) * frequencyHz / sampleRate, 1.0);
        samples[i] =
            static_cast<float>(amplitude * std::sin(2.0 * std::numbers::pi * cycles + phase));
    }
    return samples;
}

inline Samples silence(double sampleRate, double seconds) {
    return Samples(static_cast<std::size_t>(std::llround(seconds * sampleRate)));
}

/// From 20 Hz to 20 kHz, or 0.45 of the sample rate, at a constant number of octaves a second.
inline Samples sweep(double sampleRate, double amplitude, double seconds) {
    const double top = std::min(20000.0, 0.45 * sampleRate);
    Samples samples(static_cast<std::size_t>(std::llround(seconds * sampleRate)));
    double cycles = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(amplitude * std::sin(2.0 * std::numbers::pi * cycles));
        const double position = static_cast<double>(i) / static_cast<double>(samples.size());
        cycles = std::fmod(cycles + 20.0 * std::pow(top / 20.0, position) / sampleRate, 1.0);
    }
    return samples;
}

/// Noise below about 3 kHz in syllables of 50 to 350 ms of varying level with pauses between.
inline Samples speechLike(double sampleRate, double seconds, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    const double pole = std::exp(-2.0 * std::numbers::pi * 1500.0 / sampleRate);
    Samples samples(static_cast<std::size_t>(std::llround(seconds * sampleRate)));
    double low = 0.0;
    double lower = 0.0;
    double envelope = 0.0;
    double target = 0.0;
    double samplesLeft = 0.0;
    for (float& sample : samples) {
        if (samplesLeft <= 0.0) {
            target = uniform(random) < 0.3 ? 0.0 : std::pow(10.0, -1.5 * uniform(random));
            samplesLeft = sampleRate * (0.05 + 0.3 * uniform(random));
        }
        samplesLeft -= 1.0;
        envelope += (target - envelope) * 100.0 / sampleRate;
        low += (1.0 - pole) * (normal(random) * std::sqrt(sampleRate / 48000.0) - low);
        lower += (1.0 - pole) * (low - lower);
        sample = static_cast<float>(1.5 * envelope * lower);
    }
    return samples;
}

inline void append(Samples& samples, const Samples& more) {
    samples.insert(samples.end(), more.begin(), more.end());
}

}  // namespace TarvaneKit::Testing
