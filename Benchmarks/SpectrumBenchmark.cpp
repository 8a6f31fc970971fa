// What is done to a spectrum after the transform, each step by itself on every instruction set of
// this machine, beside the plain reading of its formula. The spectra are those of the analyzer
// (2048 lines) and of the spectrogram (4096).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DSP/OctaveBandAnalyzer.h"
#include "DSP/OctaveNormalization.h"
#include "DSP/SpectrogramRow.h"
#include "DSP/SpectrumSmoothing.h"
#include "StepComparison.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneKit;
using Testing::roughLevels;
using Testing::roughSpectrum;

constexpr double tickSeconds = 1.0 / 60.0;
constexpr int lineCount = 2048;
constexpr int spectrogramLineCount = 4096;

std::vector<OctaveBand> finestBands() {
    return OctaveBands::standardBands(OctaveFraction::fortyEighthOctave, 20.0, 20000.0);
}

void bandLevels(benchmark::State& state) {
    const OctaveBandAnalyzer analyzer(finestBands(), 2 * lineCount, benchmarkSampleRate);
    const auto magnitudes = roughSpectrum(lineCount);
    std::vector<double> levelsDB(analyzer.bands().size());
    measureTicks(state, [&] { analyzer.bandLevels(magnitudes, levelsDB); });
}

void plainBandLevels(benchmark::State& state) {
    const auto bands = finestBands();
    const auto magnitudes = roughSpectrum(lineCount);
    measureTicks(state, [&] {
        benchmark::DoNotOptimize(
            Testing::plainBandLevels(bands, 2 * lineCount, benchmarkSampleRate, magnitudes));
    });
}

void smoothedLevels(benchmark::State& state) {
    const auto levels = roughLevels(lineCount);
    std::vector<double> smoothedDB(levels.size());
    SpectrumAverage average;
    measureTicks(state, [&] {
        smoothedLevelsDB(levels, average, TimeWeighting::fast, tickSeconds, smoothedDB);
    });
}

void plainSmoothedLevels(benchmark::State& state) {
    const auto levels = roughLevels(lineCount);
    Testing::PlainAverage average;
    measureTicks(state, [&] {
        benchmark::DoNotOptimize(
            Testing::plainSmoothedLevels(levels, average, TimeWeighting::fast, tickSeconds));
    });
}

void normalization(benchmark::State& state) {
    const auto levels = roughLevels(lineCount);
    std::vector<double> normalizedDB(levels.size());
    measureTicks(
        state, [&] { octaveNormalized(levels, 2 * lineCount, benchmarkSampleRate, normalizedDB); });
}

void plainNormalization(benchmark::State& state) {
    const auto levels = roughLevels(lineCount);
    measureTicks(state, [&] {
        benchmark::DoNotOptimize(
            Testing::plainOctaveNormalized(levels, 2 * lineCount, benchmarkSampleRate));
    });
}

void row(benchmark::State& state) {
    const auto levels = roughLevels(spectrogramLineCount);
    std::vector<float> result(spectrogramFrequencies().size());
    measureTicks(state, [&] {
        spectrogramRow(levels, spectrogramFrequencies(), benchmarkSampleRate,
                       2 * spectrogramLineCount, result);
    });
}

void plainRow(benchmark::State& state) {
    const auto levels = roughLevels(spectrogramLineCount);
    measureTicks(state, [&] {
        benchmark::DoNotOptimize(Testing::plainSpectrogramRow(
            levels, spectrogramFrequencies(), benchmarkSampleRate, 2 * spectrogramLineCount));
    });
}

void rowOfColumns(benchmark::State& state) {
    const SpectrogramColumns columns(spectrogramFrequencies(), benchmarkSampleRate,
                                     2 * spectrogramLineCount);
    const auto levels = roughLevels(static_cast<int>(columns.lines().size()));
    std::vector<float> result(spectrogramFrequencies().size());
    measureTicks(state, [&] { columns.row(levels, result); });
}

// What a tick of a stereo channel with spectrum and spectrogram takes logarithms of: 485 bands, two
// times 2048 lines and the 1 300 lines that a spectrogram's columns read.
constexpr int levelsPerTick = 6000;

std::vector<double> powersOf(int count) {
    std::vector<double> powers = roughLevels(count);
    powersOfLevels(powers, powers);
    return powers;
}

void levels(benchmark::State& state) {
    const auto powers = powersOf(levelsPerTick);
    std::vector<double> levelsDB(powers.size());
    measureTicks(state, [&] { levelsOfPowers(powers, lineFloor, levelsDB); });
}

void plainLevels(benchmark::State& state) {
    const auto powers = powersOf(levelsPerTick);
    std::vector<double> levelsDB(powers.size());
    measureTicks(state, [&] {
        for (std::size_t i = 0; i < powers.size(); ++i) {
            levelsDB[i] = 10.0 * std::log10(std::max(powers[i], lineFloor.power));
        }
        benchmark::DoNotOptimize(levelsDB.data());
    });
}

// As a channel does it, whose spectra are still powers.
void smoothedPowers(benchmark::State& state) {
    const auto levelsDB = roughLevels(lineCount);
    const auto powers = powersOf(lineCount);
    std::vector<double> smoothedDB(levelsDB.size());
    SpectrumAverage average;
    measureTicks(state, [&] {
        smoothLevels({.powers = powers, .levelsDB = levelsDB}, average, TimeWeighting::fast,
                     tickSeconds, smoothedDB);
    });
}

const bool isRegistered = [] {
    compareStep("levelsOfPowers", levels, plainLevels);
    compareStep("bandLevels", bandLevels, plainBandLevels);
    compareStep("smoothedLevelsDB", smoothedLevels, plainSmoothedLevels);
    compareStep("smoothLevels", smoothedPowers, "smoothedLevelsDB");
    compareStep("octaveNormalized", normalization, plainNormalization);
    compareStep("spectrogramRow", row, plainRow);
    compareStep("SpectrogramColumns", rowOfColumns, "spectrogramRow");
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
