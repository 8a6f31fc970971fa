// What a block costs a channel on the capture thread, whole: the copy that turns samples that are
// not finite into zeros, the rolling buffer, the peak, the meters. Beside the plain reading of the
// meters' formulas. A frame is one sample of each side.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <vector>

#include "FrameCost.h"
#include "Metering/ChannelProcessor.h"
#include "Support/ScalarSPLMeter.h"
#include "Support/Signals.h"

namespace TarvaneBenchmarks {
namespace {

using TarvaneApp::ChannelProcessor;
using TarvaneKit::Weighting;
using TarvaneKit::Testing::ScalarSPLMeter;
using TarvaneKit::Testing::whiteNoise;

// Arguments: sides, frames per block.
void ingest(benchmark::State& state) {
    const bool isStereo = state.range(0) == 2;
    const int frameCount = static_cast<int>(state.range(1));
    ChannelProcessor processor(TarvaneKit::UUID::main(), isStereo);
    processor.configure({});
    const auto samples = whiteNoise(frameCount);
    const float* right = isStereo ? samples.data() : nullptr;
    measureFrames(state, frameCount, [&] { processor.ingest(samples.data(), right, frameCount); });
}

void plainMeters(benchmark::State& state) {
    const int frameCount = static_cast<int>(state.range(1));
    std::vector<ScalarSPLMeter> meters;
    for (int side = 0; side < state.range(0); ++side) {
        meters.emplace_back(benchmarkSampleRate);
        meters.back().addLeq(Weighting::a);
    }
    const auto samples = whiteNoise(frameCount);
    measureFrames(state, frameCount, [&] {
        for (ScalarSPLMeter& meter : meters) {
            meter.processBlock(samples);
        }
    });
}

const bool isRegistered = [] {
    auto* fast = benchmark::RegisterBenchmark("ChannelProcessor/ingest", ingest);
    auto* plain = benchmark::RegisterBenchmark("ChannelProcessor/plain", plainMeters);
    for (const int sides : {1, 2}) {
        for (const int frameCount : {256, 512}) {
            fast->Args({sides, frameCount});
            plain->Args({sides, frameCount});
            const std::string arguments = fmt::format("/{}/{}", sides, frameCount);
            compareCost(
                {"ChannelProcessor/ingest" + arguments, "ChannelProcessor/plain" + arguments, {}});
        }
    }
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
