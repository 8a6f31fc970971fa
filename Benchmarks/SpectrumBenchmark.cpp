// What is done to a spectrum after the transform, each step by itself on every instruction set of
// this machine, beside the plain reading of its formula. The spectra are those of the analyzer
// (2048 lines) and of the spectrogram (4096).

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

#include "DSP/Kernels/VectorTarget.h"
#include "DSP/OctaveBandAnalyzer.h"
#include "DSP/OctaveNormalization.h"
#include "DSP/SpectrogramRow.h"
#include "DSP/SpectrumSmoothing.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"
#include "TickCost.h"

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

using Function = void (*)(benchmark::State&);

void compare(const std::string& step, Function fast, const std::string& plainStep, Function plain) {
    const std::string plainName = plainStep + "/plain";
    if (plain != nullptr) {
        benchmark::RegisterBenchmark(plainName.c_str(), plain);
    }
    for (const VectorTarget& target : availableVectorTargets()) {
        const std::string name = step + "/" + target.name;
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            useVectorTarget(target);
            fast(state);
            useBestVectorTarget();
        });
        compareCost({name + "/", plainName + "/", {}});
    }
}

const bool isRegistered = [] {
    compare("bandLevels", bandLevels, "bandLevels", plainBandLevels);
    compare("smoothedLevelsDB", smoothedLevels, "smoothedLevelsDB", plainSmoothedLevels);
    compare("octaveNormalized", normalization, "octaveNormalized", plainNormalization);
    compare("spectrogramRow", row, "spectrogramRow", plainRow);
    compare("SpectrogramColumns", rowOfColumns, "spectrogramRow", nullptr);
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
