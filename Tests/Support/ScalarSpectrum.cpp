#include "Support/ScalarSpectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace TarvaneKit::Testing {

namespace {

constexpr int fftSize = 4096;
constexpr int spectrogramFFTSize = 8192;

std::vector<double> lineLevels(std::span<const float> magnitudes) {
    std::vector<double> levels;
    for (const float m : magnitudes) {
        levels.push_back(20.0 * std::log10(std::max(static_cast<double>(m), 1e-9)));
    }
    return levels;
}

void hold(std::span<const double> levels, double elapsedSeconds, std::vector<double>& held) {
    if (held.size() != levels.size()) {
        held.assign(levels.size(), -120.0);
    }
    for (std::size_t i = 0; i < held.size(); ++i) {
        if (held[i] < levels[i]) {
            held[i] = levels[i];
        } else {
            held[i] -= 6.0 * elapsedSeconds;
        }
    }
}

std::vector<float> gainTable(int size, double sampleRate,
                             const std::function<double(double)>& correctionDB) {
    std::vector<float> gains;
    for (int i = 0; i < size / 2; ++i) {
        gains.push_back(
            static_cast<float>(std::pow(10.0, correctionDB(sampleRate * i / size) / 20.0)));
    }
    return gains;
}

}  // namespace

std::vector<double> plainHannWindow(int count) {
    std::vector<double> window;
    for (int n = 0; n < count; ++n) {
        window.push_back(0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * n / count)));
    }
    return window;
}

std::vector<double> plainMagnitudes(std::span<const float> samples,
                                    std::span<const double> window) {
    const std::size_t size = samples.size();
    std::vector<double> windowed;
    std::vector<double> cosine;
    std::vector<double> sine;
    double sum = 0.0;
    for (std::size_t n = 0; n < size; ++n) {
        const double angle =
            2.0 * std::numbers::pi * static_cast<double>(n) / static_cast<double>(size);
        windowed.push_back(static_cast<double>(samples[n]) * window[n]);
        cosine.push_back(std::cos(angle));
        sine.push_back(std::sin(angle));
        sum += window[n];
    }
    std::vector<double> magnitudes;
    for (std::size_t k = 0; k < size / 2; ++k) {
        double re = 0.0;
        double im = 0.0;
        for (std::size_t n = 0; n < size; ++n) {
            re += windowed[n] * cosine[k * n % size];
            im -= windowed[n] * sine[k * n % size];
        }
        magnitudes.push_back(2.0 * std::hypot(re, im) / sum);
    }
    return magnitudes;
}

std::vector<double> plainBandLevels(const std::vector<OctaveBand>& bands, int size,
                                    double sampleRate, std::span<const float> magnitudes) {
    std::vector<double> power(bands.size(), 0.0);
    const double w = sampleRate / size;
    std::size_t first = 0;
    for (std::size_t k = 0; k < magnitudes.size(); ++k) {
        const double center = w * static_cast<double>(k);
        const double binHigh = center + w / 2.0;
        const double binLow = center - w / 2.0;
        if (!(binHigh > 0.0)) {
            continue;
        }
        while (first < bands.size() && bands[first].upperEdgeHz <= binLow) {
            ++first;
        }
        const auto magnitude = static_cast<double>(magnitudes[k]);
        const double p = magnitude * magnitude;
        for (std::size_t b = first; b < bands.size() && bands[b].lowerEdgeHz < binHigh; ++b) {
            const double low = std::max(binLow, bands[b].lowerEdgeHz);
            const double high = std::min(binHigh, bands[b].upperEdgeHz);
            if (low < high) {
                power[b] += p * (high - low) / (binHigh - binLow);
            }
        }
    }
    std::vector<double> levels;
    for (const double p : power) {
        levels.push_back(20.0 * std::log10(std::max(std::sqrt(p), 1e-12)));
    }
    return levels;
}

std::vector<double> plainSmoothedLevels(std::span<const double> newLevelsDB, PlainAverage& average,
                                        TimeWeighting timeWeighting, double elapsedSeconds) {
    std::vector<double> powers;
    for (const double level : newLevelsDB) {
        powers.push_back(std::pow(10.0, level / 10.0));
    }
    if (average.state.size() != powers.size()) {
        average.state = powers;
        average.totalWeight = elapsedSeconds;
        return {newLevelsDB.begin(), newLevelsDB.end()};
    }
    const double total = average.totalWeight + elapsedSeconds;
    std::vector<double> levels;
    for (std::size_t i = 0; i < powers.size(); ++i) {
        double& s = average.state[i];
        switch (timeWeighting) {
            case TimeWeighting::fast:
                s += (1.0 - std::exp(-elapsedSeconds / 0.125)) * (powers[i] - s);
                break;
            case TimeWeighting::slow:
                s += (1.0 - std::exp(-elapsedSeconds / 1.0)) * (powers[i] - s);
                break;
            case TimeWeighting::infinite:
                s = (average.totalWeight * s + elapsedSeconds * powers[i]) / total;
                break;
            case TimeWeighting::none:
                s = powers[i];
                break;
        }
        levels.push_back(10.0 * std::log10(std::max(s, 1e-12)));
    }
    if (timeWeighting == TimeWeighting::infinite) {
        average.totalWeight = total;
    }
    return levels;
}

std::vector<double> plainOctaveNormalized(std::span<const double> levelsDB, int size,
                                          double sampleRate) {
    std::vector<double> normalized(levelsDB.begin(), levelsDB.end());
    for (std::size_t i = 0; i < normalized.size(); ++i) {
        const double f = sampleRate * static_cast<double>(i) / size;
        if (f > 0.0) {
            normalized[i] += 10.0 * std::log10(f / 1000.0);
        }
    }
    return normalized;
}

std::vector<double> plainLogSpacedFrequencies(int count, double minHz, double maxHz) {
    std::vector<double> frequencies;
    for (int i = 0; i < count; ++i) {
        frequencies.push_back(std::pow(
            10.0, std::log10(minHz) + (std::log10(maxHz) - std::log10(minHz)) * i / (count - 1)));
    }
    return frequencies;
}

std::vector<float> plainSpectrogramRow(std::span<const double> lineLevelsDB,
                                       std::span<const double> frequencies, double sampleRate,
                                       int size) {
    std::vector<float> row;
    const int last = static_cast<int>(lineLevelsDB.size()) - 1;
    for (const double f : frequencies) {
        if (last < 0) {
            row.push_back(-160.0F);
            continue;
        }
        const double p = f * size / sampleRate;
        const int i = static_cast<int>(std::floor(p));
        const auto at = [&](int line) { return lineLevelsDB[static_cast<std::size_t>(line)]; };
        const double level =
            i < 0 ? at(0) : (i < last ? at(i) + (at(i + 1) - at(i)) * (p - i) : at(last));
        row.push_back(static_cast<float>(level));
    }
    return row;
}

ScalarChannelAnalysis::ScalarChannelAnalysis(double sampleRate, OctaveFraction fraction,
                                             const std::function<double(double)>& correctionDB)
    : sampleRate_(sampleRate),
      analyzer_(*FFTAnalyzer::create(fftSize, FFTAnalyzer::WindowType::hann)),
      spectrogramAnalyzer_(*FFTAnalyzer::create(spectrogramFFTSize, FFTAnalyzer::WindowType::hann)),
      bands_(OctaveBands::standardBands(fraction, 20.0, 20000.0)),
      gains_(gainTable(fftSize, sampleRate, correctionDB)),
      spectrogramGains_(gainTable(spectrogramFFTSize, sampleRate, correctionDB)),
      frequencies_(plainLogSpacedFrequencies(1024, 20.0, 20000.0)) {}

std::vector<float> ScalarChannelAnalysis::corrected(const FFTAnalyzer& analyzer,
                                                    const std::vector<float>& gains,
                                                    std::span<const float> left,
                                                    std::span<const float> right) const {
    const auto size = static_cast<std::size_t>(analyzer.fftSize());
    std::vector<float> spectrum = analyzer.magnitudeSpectrum(left.last(size));
    if (!right.empty()) {
        const std::vector<float> other = analyzer.magnitudeSpectrum(right.last(size));
        for (std::size_t i = 0; i < spectrum.size(); ++i) {
            const float l = spectrum[i];
            const float r = other[i];
            spectrum[i] = std::sqrt(l * l + r * r) * 0.70710677F;
        }
    }
    for (std::size_t i = 0; i < spectrum.size(); ++i) {
        spectrum[i] *= gains[i];
    }
    return spectrum;
}

ScalarChannelAnalysis::Frame ScalarChannelAnalysis::analyze(const Request& request,
                                                            std::span<const float> left,
                                                            std::span<const float> right) {
    Frame frame;
    const double elapsed = request.elapsedSeconds;
    if (request.wantsRTA) {
        const auto spectrum = corrected(analyzer_, gains_, left, right);
        auto lines = lineLevels(spectrum);
        const auto bands = plainBandLevels(bands_, fftSize, sampleRate_, spectrum);
        if (request.octaveNormalized) {
            lines = plainOctaveNormalized(lines, fftSize, sampleRate_);
        }
        frame.bandLevelsDB =
            plainSmoothedLevels(bands, bandAverage_, request.timeWeighting, elapsed);
        frame.lineSpectrumDB =
            plainSmoothedLevels(lines, lineAverage_, request.timeWeighting, elapsed);
        hold(bands, elapsed, bandHoldDB_);
        hold(lines, elapsed, lineHoldDB_);
        frame.bandPeakHoldDB = bandHoldDB_;
        frame.linePeakHoldDB = lineHoldDB_;
    }
    if (request.wantsSpectrogram) {
        auto lines = lineLevels(corrected(spectrogramAnalyzer_, spectrogramGains_, left, right));
        if (request.octaveNormalized) {
            lines = plainOctaveNormalized(lines, spectrogramFFTSize, sampleRate_);
        }
        if (spectrogramDB_.size() != lines.size()) {
            spectrogramDB_ = lines;
        } else {
            const double up = std::exp(elapsed / -0.02);
            const double down = std::exp(elapsed / -0.06);
            for (std::size_t i = 0; i < lines.size(); ++i) {
                double& s = spectrogramDB_[i];
                s += (lines[i] - s) * (1.0 - (s <= lines[i] ? up : down));
            }
        }
        frame.spectrogramRow =
            plainSpectrogramRow(spectrogramDB_, frequencies_, sampleRate_, spectrogramFFTSize);
    }
    return frame;
}

}  // namespace TarvaneKit::Testing
