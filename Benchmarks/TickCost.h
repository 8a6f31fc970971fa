// The cost of what is done once per display tick: a "frame" is still one sample of each channel of
// a signal, of which a tick at 60 a second stands for 800.
#pragma once

#include "FrameCost.h"

namespace TarvaneBenchmarks {

inline constexpr int framesPerTick = 800;

/// Times `work()`, once per tick.
template <class Work>
void measureTicks(benchmark::State& state, Work work) {
    measureFrames(state, framesPerTick, work);
    state.counters["us/tick"] = state.counters["ns/frame"].value * framesPerTick * 1e-3;
}

/// A figure given in microseconds per tick, in the table's unit.
constexpr double nsPerFrame(double microsecondsPerTick) {
    return microsecondsPerTick * 1e3 / framesPerTick;
}

}  // namespace TarvaneBenchmarks
