// The level history at the application's size: 19 metrics, 144000 buckets of 0.1 s, one call per
// display tick of 1/60 s. What counts is the share of real time that recording takes, what one
// repaint of a graph costs, and the memory behind it all.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <random>

#include "Metrics/SPLHistoryRecorder.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneKit;

constexpr double tickSeconds = 1.0 / 60.0;
constexpr int metricCount = 19;
constexpr std::int64_t ticksPerHour = 3600 * 60;
constexpr std::int64_t ticksPerDay = 24 * ticksPerHour;

std::unique_ptr<SPLHistoryRecorder> newRecorder() {
    auto recorder = std::make_unique<SPLHistoryRecorder>(
        SPLHistoryRecorder::standardMetrics("user"), 0.1, 144000, 3.0);
    recorder->reset(Date{});
    return recorder;
}

// Levels of a concert: they move by some dB from tick to tick.
std::array<std::array<double, metricCount>, 64> levels() {
    std::mt19937 random(1);
    std::normal_distribution<double> level(85.0, 6.0);
    std::array<std::array<double, metricCount>, 64> ticks;
    for (auto& tick : ticks) {
        for (double& value : tick) {
            value = level(random);
        }
    }
    return ticks;
}

void recordTicks(SPLHistoryRecorder& recorder, std::int64_t from, std::int64_t to) {
    static const auto ticks = levels();
    for (std::int64_t tick = from; tick < to; ++tick) {
        recorder.record(ticks[static_cast<std::size_t>(tick % 64)],
                        static_cast<double>(tick) * tickSeconds);
    }
}

double residentBytes() {
    long pages = 0, residentPages = 0;
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr || std::fscanf(file, "%ld %ld", &pages, &residentPages) != 2) {
        residentPages = 0;
    }
    if (file != nullptr) {
        std::fclose(file);
    }
    return static_cast<double>(residentPages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// A day in one go, merges included, and what the process grew by: once, since memory that was
// given back may be taken again.
void recordedDay(benchmark::State& state) {
    double grownBytes = 0.0;
    for (auto _ : state) {
        const double before = residentBytes();
        const auto recorder = newRecorder();
        recordTicks(*recorder, 0, ticksPerDay);
        grownBytes = residentBytes() - before;
    }
    state.counters["MB after the day"] = grownBytes / 1e6;
    state.counters["ns/tick"] = benchmark::Counter(
        static_cast<double>(ticksPerDay * state.iterations()) * 1e-9,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
}
BENCHMARK(recordedDay)->Unit(benchmark::kMillisecond)->Iterations(1);

void recordedTick(benchmark::State& state) {
    const auto recorder = newRecorder();
    const auto ticks = levels();
    std::int64_t tick = 0;
    for (auto _ : state) {
        recorder->record(ticks[static_cast<std::size_t>(tick % 64)],
                         static_cast<double>(tick) * tickSeconds);
        ++tick;
    }
    state.counters["share of real time"] =
        benchmark::Counter(static_cast<double>(tick) * tickSeconds,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(recordedTick);

// The longest pause of the main thread: the bucket that closes 4 hours, and merges all.
void merge(benchmark::State& state) {
    const auto recorder = newRecorder();
    for (auto _ : state) {
        state.PauseTiming();
        recorder->reset(Date{});
        for (int bucket = 0; bucket < 144000; ++bucket) {
            recorder->record(std::array<double, metricCount>{}, (bucket + 0.5) * 0.1);
        }
        state.ResumeTiming();
        recorder->record(std::array<double, metricCount>{}, 144000.5 * 0.1);
    }
}
BENCHMARK(merge)->Unit(benchmark::kMicrosecond)->Iterations(20);

// One repaint of a graph of 1400 columns that shows the whole session, after the given hours.
void wholeEnvelope(benchmark::State& state) {
    const auto recorder = newRecorder();
    recordTicks(*recorder, 0, state.range(0) * ticksPerHour);
    for (auto _ : state) {
        benchmark::DoNotOptimize(recorder->envelope(0, 0.0, recorder->duration(), 1400));
    }
}
BENCHMARK(wholeEnvelope)->Arg(1)->Arg(3)->Arg(24)->Unit(benchmark::kMicrosecond);

void exceedanceLevel(benchmark::State& state) {
    const auto recorder = newRecorder();
    recordTicks(*recorder, 0, 3 * ticksPerHour);
    for (auto _ : state) {
        benchmark::DoNotOptimize(recorder->exceedanceLevel(0, 90.0));
    }
}
BENCHMARK(exceedanceLevel)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace TarvaneBenchmarks
