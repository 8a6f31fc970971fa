// Made-up signals and spectra, alike at every run.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

namespace TarvaneKit::Testing {

inline std::vector<float> whiteNoise(int count, double deviation = 0.1, std::uint32_t seed = 1) {
    std::mt19937 random(seed);
    std::normal_distribution<double> sample(0.0, deviation);
    std::vector<float> samples;
    for (int i = 0; i < count; ++i) {
        samples.push_back(static_cast<float>(sample(random)));
    }
    return samples;
}

/// A sine whose period goes `cycles` times into `count` samples.
inline std::vector<float> sineOfCycles(double cycles, int count, double amplitude = 1.0) {
    std::vector<float> samples;
    for (int n = 0; n < count; ++n) {
        samples.push_back(static_cast<float>(
            amplitude * std::sin(2.0 * std::numbers::pi * cycles * n / count + 0.3)));
    }
    return samples;
}

/// Magnitudes over 200 dB of range, zeros among them.
inline std::vector<float> roughSpectrum(int count, std::uint32_t seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> levelDB(-220.0, 20.0);
    std::vector<float> magnitudes;
    for (int i = 0; i < count; ++i) {
        magnitudes.push_back(
            i % 17 == 0 ? 0.0F : static_cast<float>(std::pow(10.0, levelDB(random) / 20.0)));
    }
    return magnitudes;
}

/// Levels over 300 dB of range.
inline std::vector<double> roughLevels(int count, std::uint32_t seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> levelDB(-240.0, 60.0);
    std::vector<double> levels;
    for (int i = 0; i < count; ++i) {
        levels.push_back(levelDB(random));
    }
    return levels;
}

}  // namespace TarvaneKit::Testing
