// What the report of a long night costs: eight hours on eight channels, the worst that is usual.
// The pages are made on the main thread, where they keep the meters waiting; the file of each
// format is made beside it.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <cmath>
#include <memory>
#include <vector>

#include "Engine/MeterEngine.h"
#include "Reports/LevelHistoryExporter.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryStore.h"
#include "TarvaneApp/Engine/EngineInsides.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneApp;
using LevelHistoryExporter::Format;
using TarvaneKit::UUID;

constexpr int channelCount = 8;
constexpr double eightHours = 8.0 * 3600.0;
constexpr double bucketSeconds = 0.1;

class Night {
  public:
    Night() {
        audio_.plugIn({.id = 40, .uid = "desk", .name = "Desk", .channelCount = channelCount});
        audio_.setDefaultInput(40);
        audio_.behaviour("").channelCount = channelCount;
        engine_ = std::make_unique<MeterEngine>(MeterEngine::Environment{
            .audio = audio_, .store = store_, .clock = clock_, .tickTimer = timer_});
        engine_->refreshDevices();
        std::vector<ChannelConfig> channels(channelCount - 1);
        ids_.push_back(UUID::main());
        for (int i = 0; i < channelCount - 1; ++i) {
            ChannelConfig& channel = channels[static_cast<std::size_t>(i)];
            channel.channelIndex = i + 1;
            channel.measuresLoudness = i % 2 == 0;
            ids_.push_back(channel.id);
        }
        engine_->extraChannels.set(channels);
        engine_->start();
        while (engine_->isStarting()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
        for (const UUID& id : ids_) {
            record(TarvaneTests::EngineInsides::levelHistory(*engine_, id));
        }
    }

    std::vector<LevelHistoryReportView> pages() const {
        return LevelHistoryExporter::pages(ids_, *engine_, clock_.now());
    }

  private:
    static void record(TarvaneKit::SPLHistoryRecorder& history) {
        std::vector<double> levels(history.metrics().size());
        for (double elapsed = 0.0; elapsed < eightHours; elapsed += bucketSeconds) {
            const double song = std::sin(elapsed / 40.0) + 0.5 * std::sin(elapsed * 1.7);
            for (std::size_t metric = 0; metric < levels.size(); ++metric) {
                levels[metric] = -30.0 + 12.0 * song - static_cast<double>(metric);
            }
            history.record(levels, elapsed);
        }
    }

    TarvaneTests::FakeAudioSystem audio_;
    TarvaneTests::MemoryStore store_;
    TarvaneTests::ManualClock clock_;
    TarvaneTests::ManualTickTimer timer_;
    std::unique_ptr<MeterEngine> engine_;
    std::vector<UUID> ids_;
};

const Night& night() {
    static const Night made;
    return made;
}

void makePages(benchmark::State& state) {
    const Night& session = night();
    for (auto _ : state) {
        benchmark::DoNotOptimize(session.pages());
    }
}

void makeFile(benchmark::State& state, Format format) {
    const auto pages = night().pages();
    for (auto _ : state) {
        benchmark::DoNotOptimize(LevelHistoryExporter::render(format, pages));
    }
}

BENCHMARK(makePages)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(makeFile, pdf, Format::pdf)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(makeFile, png, Format::png)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(makeFile, text, Format::text)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace TarvaneBenchmarks
