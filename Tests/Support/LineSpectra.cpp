#include "Support/LineSpectra.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace TarvaneKit::Testing {

namespace {

using Complex = std::complex<double>;

// Cooley and Tukey's transform in place, of a power-of-two length.
void transform(std::vector<Complex>& values) {
    const std::size_t n = values.size();
    for (std::size_t i = 1, j = 0; i < n; ++i) {
        std::size_t bit = n >> 1;
        for (; (j & bit) != 0; bit >>= 1) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(values[i], values[j]);
        }
    }
    static const std::vector<Complex> roots = [] {
        std::vector<Complex> table(spectrumFFTSize / 2);
        for (std::size_t k = 0; k < table.size(); ++k) {
            table[k] =
                std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(k) / spectrumFFTSize);
        }
        return table;
    }();
    for (std::size_t length = 2; length <= n; length *= 2) {
        const std::size_t stride = spectrumFFTSize / length;
        for (std::size_t start = 0; start < n; start += length) {
            for (std::size_t k = 0; k < length / 2; ++k) {
                const Complex root = roots[k * stride];
                const Complex a = values[start + k];
                const Complex b = values[start + k + length / 2];
                const Complex turned(root.real() * b.real() - root.imag() * b.imag(),
                                     root.real() * b.imag() + root.imag() * b.real());
                values[start + k] = a + turned;
                values[start + k + length / 2] = a - turned;
            }
        }
    }
}

}  // namespace

std::vector<float> lineMagnitudes(std::span<const float> samples) {
    constexpr std::size_t n = spectrumFFTSize;
    static const std::vector<double> window = [] {
        std::vector<double> hann(n);
        for (std::size_t i = 0; i < n; ++i) {
            hann[i] = 0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * static_cast<double>(i) / n));
        }
        return hann;
    }();
    std::vector<Complex> values(n);
    for (std::size_t i = 0; i < n; ++i) {
        values[i] = window[i] * static_cast<double>(samples[i]);
    }
    transform(values);
    std::vector<float> magnitudes(n / 2);
    for (std::size_t k = 0; k < magnitudes.size(); ++k) {
        magnitudes[k] = static_cast<float>(std::abs(values[k]) * 4.0 / n);
    }
    return magnitudes;
}

std::vector<double> lineLevelsDB(std::span<const float> magnitudes) {
    std::vector<double> levels;
    levels.reserve(magnitudes.size());
    for (const float magnitude : magnitudes) {
        levels.push_back(20.0 * std::log10(std::max(static_cast<double>(magnitude), 1e-9)));
    }
    return levels;
}

Date spectrumFrameDate(int frame) {
    return Date{} + std::chrono::nanoseconds(std::int64_t{frame} * 1'000'000'000 / 60);
}

void forEachSpectrum(
    std::span<const float> signal,
    const std::function<void(std::span<const double> levelsDB, std::span<const float> magnitudes,
                             Date date)>& receive) {
    constexpr std::size_t n = spectrumFFTSize;
    int frame = 0;
    for (std::size_t end = spectrumSamplesPerFrame; end <= signal.size();
         end += spectrumSamplesPerFrame, ++frame) {
        if (end < n) {
            continue;
        }
        const std::vector<float> magnitudes = lineMagnitudes(signal.subspan(end - n, n));
        receive(lineLevelsDB(magnitudes), magnitudes, spectrumFrameDate(frame + 1));
    }
}

}  // namespace TarvaneKit::Testing
