// The units in which the cost of analysis is given: ns per frame of a signal (one sample of each
// of its channels), and the share of one core that the signal takes in real time. At the end of a
// run a table sets each cost beside others: the plain reading of the formulas and a peer, measured
// in the same run, and the figure to beat (ns per frame, measured on another machine, so that its
// ratio is a guide and the other ratio is the claim). Time is the processor's, of all threads:
// what others run beside a benchmark counts less.
#pragma once

#include <benchmark/benchmark.h>

#include <ctime>
#include <optional>
#include <string>

namespace TarvaneBenchmarks {

inline constexpr double benchmarkSampleRate = 48000.0;

/// Times `processBlock()` over the state's iterations, a block of `framesPerBlock` frames each,
/// and sets the counters "ns/frame" and "share".
template <class ProcessBlock>
void measureFrames(benchmark::State& state, int framesPerBlock, ProcessBlock processBlock) {
    const std::clock_t start = std::clock();
    for (auto _ : state) {
        processBlock();
    }
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    const double frames = static_cast<double>(state.iterations()) * framesPerBlock;
    state.counters["ns/frame"] = seconds * 1e9 / frames;
    state.counters["share"] = seconds * benchmarkSampleRate / frames;
}

/// What one benchmark's cost is set beside.
struct CostComparison {
    std::string name;                ///< of the benchmark
    std::string plain;               ///< of the benchmark that it replaces
    std::optional<double> nsToBeat;  ///< per frame
    std::string peer = {};           ///< of what else does the like; empty: there is none
};

/// Has the table's row printed when the run is over, if both benchmarks ran.
void compareCost(CostComparison comparison);

}  // namespace TarvaneBenchmarks
