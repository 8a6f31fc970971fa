// A whole display tick of the engine with everything on: what it takes of the main thread (ordering
// the analysis, publishing its results) and of the analysis threads, for as many stereo channels as
// a large desk has. The samples are fed beside the count. And what a stored setting costs the main
// thread while a slider is dragged across it.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <ctime>

#include "Engine/MeterEngine.h"
#include "EngineDesk.h"
#include "Metering/ChannelAnalysis.h"
#include "Settings/UserDefaults.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/TemporaryFolder.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneApp;

double cpuSeconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Ticks that count, the same for a few channels as for many: while the spectrogram's history fills,
// each of its rows is memory that the system hands out anew.
constexpr int countedTicks = 400;

// Argument: stereo channels.
void wholeTick(benchmark::State& state) {
    ensureApplication();
    const auto channels = static_cast<double>(state.range(0));
    EngineDesk desk(static_cast<int>(state.range(0)));
    const auto noise = EngineDesk::noise(EngineDesk::framesPerTick);
    desk.feed(EngineDesk::noise(ChannelAnalysis::windowLength));
    double mainSeconds = 0.0;
    double allSeconds = 0.0;
    int ticks = 0;
    for (auto _ : state) {
        state.PauseTiming();
        desk.feed(noise);
        state.ResumeTiming();
        const double mainBefore = cpuSeconds(CLOCK_THREAD_CPUTIME_ID);
        const double allBefore = cpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
        desk.tick();
        if (ticks < countedTicks) {
            mainSeconds += cpuSeconds(CLOCK_THREAD_CPUTIME_ID) - mainBefore;
            allSeconds += cpuSeconds(CLOCK_PROCESS_CPUTIME_ID) - allBefore;
            ++ticks;
        }
    }
    state.counters["main us/tick"] = mainSeconds / ticks * 1e6;
    state.counters["main us/channel"] = mainSeconds / ticks / channels * 1e6;
    state.counters["analysis us/tick"] = (allSeconds - mainSeconds) / ticks * 1e6;
    state.counters["analysis us/channel"] = (allSeconds - mainSeconds) / ticks / channels * 1e6;
}

// With the user's own kind of store, a file on disk.
void draggedSetting(benchmark::State& state) {
    ensureApplication();
    const TarvaneTests::TemporaryFolder folder;
    TarvaneTests::FakeAudioSystem audio;
    TarvaneTests::ManualClock clock;
    TarvaneTests::ManualTickTimer timer;
    UserDefaults store(QString::fromStdString((folder.path() / "Tarvane.ini").string()));
    MeterEngine engine({.audio = audio, .store = store, .clock = clock, .tickTimer = timer});
    double longest = 0.0;
    double value = 0.15;
    for (auto _ : state) {
        value = value < 0.85 ? value + 0.0001 : 0.15;
        const auto before = std::chrono::steady_clock::now();
        engine.panelSplitFraction.set(value);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - before;
        longest = std::max(longest, took.count());
    }
    state.counters["longest us"] = longest * 1e6;
}

BENCHMARK(draggedSetting)->Name("MeterEngine/draggedSetting");
BENCHMARK(wholeTick)->Name("MeterEngine/tick")->Arg(1)->Arg(8)->Arg(64)->Arg(200);

}  // namespace
}  // namespace TarvaneBenchmarks
