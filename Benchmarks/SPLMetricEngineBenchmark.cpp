// The sound level meter on noise: A, C, Z, twelve levels, three peaks and one Leq per signal, on
// every instruction set of this machine and beside the plain reading of its formulas. Stereo is
// two engines, as a stereo channel owns them; a frame is then one sample of each.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "DSP/Kernels/VectorTarget.h"
#include "FrameCost.h"
#include "Metrics/SPLMetricEngine.h"
#include "Support/ScalarSPLMeter.h"

namespace TarvaneBenchmarks {
namespace {

using TarvaneKit::SPLMetricEngine;
using TarvaneKit::VectorTarget;
using TarvaneKit::Weighting;
using TarvaneKit::Testing::ScalarSPLMeter;

constexpr int realBlockLength = 256;  // what the audio server is asked for
constexpr int longBlockLength = 512;  // what the figures to beat were measured with

// ns per stereo frame in blocks of 512, by Highway's name of the instruction set: the fastest
// experiment on a 2.95 GHz AVX-512 cloud machine.
const std::map<std::string, double> nsToBeat = {
    {"SSSE3", 4.9}, {"SSE4", 4.9}, {"AVX2", 4.2}, {"AVX3", 2.6}};

std::vector<float> noise(int count) {
    std::mt19937 random(1);
    std::normal_distribution<float> sample(0.0F, 0.1F);
    std::vector<float> samples(static_cast<std::size_t>(count));
    for (float& x : samples) {
        x = sample(random);
    }
    return samples;
}

// Arguments: channels, frames per block.
void splMetricEngine(benchmark::State& state, const VectorTarget& target) {
    TarvaneKit::useVectorTarget(target);
    const int frameCount = static_cast<int>(state.range(1));
    std::vector<std::unique_ptr<SPLMetricEngine>> engines;
    for (int channel = 0; channel < state.range(0); ++channel) {
        engines.push_back(std::make_unique<SPLMetricEngine>(benchmarkSampleRate,
                                                            TarvaneKit::CalibrationProfile{}));
        engines.back()->configureLeq("user", Weighting::a, 60.0);
    }
    const auto samples = noise(frameCount);
    measureFrames(state, frameCount, [&] {
        for (const auto& engine : engines) {
            engine->processBlock(samples);
        }
    });
    TarvaneKit::useBestVectorTarget();
}

void scalarSPLMeter(benchmark::State& state) {
    const int frameCount = static_cast<int>(state.range(1));
    std::vector<ScalarSPLMeter> meters;
    for (int channel = 0; channel < state.range(0); ++channel) {
        meters.emplace_back(benchmarkSampleRate);
        meters.back().addLeq(Weighting::a);
    }
    const auto samples = noise(frameCount);
    measureFrames(state, frameCount, [&] {
        for (ScalarSPLMeter& meter : meters) {
            meter.processBlock(samples);
        }
    });
}

std::string arguments(int channels, int frameCount) {
    return fmt::format("/{}/{}", channels, frameCount);
}

const bool isRegistered = [] {
    const std::string scalarName = "SPLMeter/plain";
    auto* scalar = benchmark::RegisterBenchmark(scalarName.c_str(), scalarSPLMeter);
    for (const int channels : {1, 2}) {
        for (const int frameCount : {realBlockLength, longBlockLength}) {
            scalar->Args({channels, frameCount});
        }
    }
    for (const VectorTarget& target : TarvaneKit::availableVectorTargets()) {
        const std::string name = "SPLMetricEngine/" + target.name;
        auto* engine = benchmark::RegisterBenchmark(name.c_str(), splMetricEngine, target);
        for (const int channels : {1, 2}) {
            for (const int frameCount : {realBlockLength, longBlockLength}) {
                engine->Args({channels, frameCount});
                CostComparison comparison{name + arguments(channels, frameCount),
                                          scalarName + arguments(channels, frameCount),
                                          {}};
                const auto figure = nsToBeat.find(target.name);
                if (channels == 2 && figure != nsToBeat.end()) {
                    comparison.nsToBeat = figure->second;
                }
                compareCost(comparison);
            }
        }
    }
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
