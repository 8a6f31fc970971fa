// What a channel costs with everything on: the tick's analysis by itself (spectrum in 1/48 octave,
// ring-out detection, spectrogram row) on every instruction set of this machine beside the plain
// reading of its formulas; and whole channels, fed and analysed in real time's measure, as many at
// once as a large desk has, with what each takes of a core and of memory.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <malloc.h>

#include <memory>
#include <string>
#include <vector>

#include "DSP/Kernels/VectorTarget.h"
#include "Metering/ChannelProcessor.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"
#include "TickCost.h"

namespace TarvaneBenchmarks {
namespace {

using TarvaneApp::AnalysisSettings;
using TarvaneApp::ChannelAnalysis;
using TarvaneApp::ChannelAnalysisRequest;
using TarvaneApp::ChannelFrame;
using TarvaneApp::ChannelProcessor;
using TarvaneKit::OctaveFraction;
using TarvaneKit::Testing::ScalarChannelAnalysis;
using TarvaneKit::Testing::whiteNoise;

constexpr auto tickDuration = std::chrono::nanoseconds(16'666'667);

ChannelAnalysisRequest everything() {
    ChannelAnalysisRequest request;
    request.wantsRTA = true;
    request.wantsSpectrogram = true;
    request.ringOutEnabled = true;
    request.octaveFraction = OctaveFraction::fortyEighthOctave;
    request.octaveNormalized = true;
    return request;
}

void analysis(benchmark::State& state) {
    ChannelAnalysis channel({.sampleRate = benchmarkSampleRate, .calibration = {}});
    const auto left = whiteNoise(ChannelAnalysis::windowLength, 0.1, 1);
    const auto right = whiteNoise(ChannelAnalysis::windowLength, 0.1, 2);
    const ChannelAnalysisRequest request = everything();
    AnalysisSettings settings;
    ChannelFrame frame;
    measureTicks(state, [&] {
        settings.now += tickDuration;
        channel.analyze(settings, request, ChannelAnalysis::Window{left, right}, frame);
    });
}

// Without the ring-out detection, whose plain reading stands beside its own benchmark.
void plainAnalysis(benchmark::State& state) {
    ScalarChannelAnalysis channel(benchmarkSampleRate, OctaveFraction::fortyEighthOctave,
                                  [](double) { return 0.0; });
    const auto left = whiteNoise(ChannelAnalysis::windowLength, 0.1, 1);
    const auto right = whiteNoise(ChannelAnalysis::windowLength, 0.1, 2);
    measureTicks(state, [&] {
        benchmark::DoNotOptimize(channel.analyze({.octaveNormalized = true}, left, right));
    });
}

std::size_t bytesInUse() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Argument: stereo channels. One tick of each: 800 frames in blocks of 256 at most, all meters,
// loudness, the analysis, and what a display reads.
void wholeChannels(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto left = whiteNoise(framesPerTick, 0.1, 1);
    const auto right = whiteNoise(framesPerTick, 0.1, 2);
    const auto metric =
        TarvaneKit::SPLMetric::spl(TarvaneKit::Weighting::a, TarvaneKit::TimeWeighting::fast);
    const ChannelAnalysisRequest request = everything();
    AnalysisSettings settings;
    const std::size_t before = bytesInUse();
    std::vector<std::unique_ptr<ChannelProcessor>> channels;
    std::vector<ChannelFrame> frames(count);
    for (std::size_t i = 0; i < count; ++i) {
        channels.push_back(std::make_unique<ChannelProcessor>(TarvaneKit::UUID::main(), true));
        channels.back()->configure({});
        channels.back()->setMeasuresLoudness(true);
    }
    const auto tick = [&] {
        settings.now += tickDuration;
        for (std::size_t i = 0; i < count; ++i) {
            for (int begin = 0; begin < framesPerTick; begin += 256) {
                channels[i]->ingest(left.data() + begin, right.data() + begin,
                                    std::min(256, framesPerTick - begin));
            }
            frames[i] = channels[i]->analyze(settings, request, std::move(frames[i]));
            benchmark::DoNotOptimize(channels[i]->value(metric));
            benchmark::DoNotOptimize(channels[i]->loudnessReadings());
        }
    };
    for (int i = 0; i < 20; ++i) {
        tick();
    }
    state.counters["KB/channel"] =
        static_cast<double>(bytesInUse() - before) / 1024.0 / static_cast<double>(count);
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        tick();
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    const double secondsPerChannel =
        elapsed.count() / static_cast<double>(state.iterations()) / static_cast<double>(count);
    state.counters["us/channel"] = secondsPerChannel * 1e6;
    state.counters["channels/core"] = 1.0 / 60.0 / secondsPerChannel;
}

const bool isRegistered = [] {
    const std::string plainName = "ChannelAnalysis/plain";
    benchmark::RegisterBenchmark(plainName.c_str(), plainAnalysis);
    for (const auto& target : TarvaneKit::availableVectorTargets()) {
        const std::string name = "ChannelAnalysis/" + target.name;
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            useVectorTarget(target);
            analysis(state);
            TarvaneKit::useBestVectorTarget();
        });
        // Microseconds per tick to beat.
        const std::optional<double> limit = target.name == "AVX2"   ? std::optional(54.0)
                                            : target.name == "AVX3" ? std::optional(38.0)
                                                                    : std::nullopt;
        compareCost({name, plainName, limit ? std::optional(nsPerFrame(*limit)) : std::nullopt});
    }
    benchmark::RegisterBenchmark("ChannelProcessor/everything", wholeChannels)
        ->Arg(1)
        ->Arg(8)
        ->Arg(32)
        ->Arg(64)
        ->Arg(200);
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
