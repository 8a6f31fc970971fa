// One step of a tick on every instruction set of this machine, set beside the plain reading of its
// formula and, as a peer, beside the analyzer's own transform of 4096 points, which no analysis can
// do without and which so sets what a step may cost.
#pragma once

#include <string>

#include "DSP/Kernels/VectorTarget.h"
#include "TickCost.h"

namespace TarvaneBenchmarks {

using StepFunction = void (*)(benchmark::State&);

/// The name of a step's plain reading.
inline std::string plainName(const std::string& step) {
    return step + "/plain";
}

inline void registerPlain(const std::string& step, StepFunction plain) {
    benchmark::RegisterBenchmark(plainName(step).c_str(), plain);
}

/// Registers `fast` as "step/instruction set" for each of them. `plainStep` was registered with
/// its plain reading; it may be another step's.
inline void compareStep(const std::string& step, StepFunction fast, const std::string& plainStep) {
    for (const TarvaneKit::VectorTarget& target : TarvaneKit::availableVectorTargets()) {
        const std::string name = step + "/" + target.name;
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            TarvaneKit::useVectorTarget(target);
            fast(state);
            TarvaneKit::useBestVectorTarget();
        });
        CostComparison comparison{name + "/", plainName(plainStep) + "/", {}};
        comparison.peer = "FFTAnalyzer/" + target.name + "/4096";
        compareCost(comparison);
    }
}

inline void compareStep(const std::string& step, StepFunction fast, StepFunction plain) {
    registerPlain(step, plain);
    compareStep(step, fast, step);
}

}  // namespace TarvaneBenchmarks
