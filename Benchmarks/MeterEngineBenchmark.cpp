// A whole display tick of the engine with everything on: what it takes of the main thread (ordering
// the analysis, publishing its results) and of the analysis threads, for as many stereo channels as
// a large desk has. The samples are fed beside the count. And what a stored setting costs the main
// thread while a slider is dragged across it.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <ctime>
#include <memory>
#include <vector>

#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Metering/ChannelAnalysis.h"
#include "Settings/UserDefaults.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryStore.h"
#include "Support/Signals.h"
#include "Support/TemporaryFolder.h"
#include "TickCost.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneApp;
using TarvaneKit::UUID;

double cpuSeconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void ensureApplication() {
    static int argc = 1;
    static char name[] = "benchmark";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
}

// An engine with so many stereo channels on one device, each shown in every way.
class Desk {
  public:
    explicit Desk(int channelCount) {
        audio_.plugIn({.id = 40, .uid = "desk", .name = "Desk", .channelCount = 2});
        audio_.setDefaultInput(40);
        engine_ = std::make_unique<MeterEngine>(MeterEngine::Environment{
            .audio = audio_, .store = store_, .clock = clock_, .tickTimer = timer_});
        engine_->refreshDevices();
        engine_->selectedDeviceUID.set("desk");
        std::vector<ChannelConfig> channels(static_cast<std::size_t>(channelCount - 1));
        std::vector<UUID> ids{UUID::main()};
        ChannelDisplaySettings display;
        display.octaveFraction = TarvaneKit::OctaveFraction::fortyEighthOctave;
        for (ChannelConfig& channel : channels) {
            channel.deviceUID = "desk";
            channel.isStereo = true;
            channel.measuresLoudness = true;
            channel.ringOutEnabled = true;
            channel.display = display;
            ids.push_back(channel.id);
        }
        engine_->mainInputIsStereo.set(true);
        engine_->mainInputMeasuresLoudness.set(true);
        engine_->ringOutEnabled.set(true);
        engine_->octaveFraction.set(display.octaveFraction);
        engine_->extraChannels.set(std::move(channels));
        spectra_.update(*engine_, ids, ChannelDemand::rta);
        spectrograms_.update(*engine_, ids, ChannelDemand::spectrogram);
        QObject::connect(&engine_->meterChannel(ids.back()).live, &LiveMeterData::willChange,
                         [this] { ++publications_; });
        engine_->start();
        while (engine_->isStarting()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        feed(ChannelAnalysis::windowLength);
    }

    void feed(int frames) {
        audio_.feed("desk", {TarvaneKit::Testing::whiteNoise(frames, 0.1, 1),
                             TarvaneKit::Testing::whiteNoise(frames, 0.1, 2)});
    }
    void tick() {
        clock_.advance(1.0 / 60.0);
        const int before = publications_;
        timer_.fire();
        while (publications_ == before) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

  private:
    TarvaneTests::FakeAudioSystem audio_;
    TarvaneTests::MemoryStore store_;
    TarvaneTests::ManualClock clock_;
    TarvaneTests::ManualTickTimer timer_;
    std::unique_ptr<MeterEngine> engine_;
    ChannelDemandRegistration spectra_;
    ChannelDemandRegistration spectrograms_;
    int publications_ = 0;
};

// Argument: stereo channels.
void wholeTick(benchmark::State& state) {
    ensureApplication();
    const auto channels = static_cast<double>(state.range(0));
    Desk desk(static_cast<int>(state.range(0)));
    double mainSeconds = 0.0;
    double allSeconds = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        desk.feed(framesPerTick);
        state.ResumeTiming();
        const double mainBefore = cpuSeconds(CLOCK_THREAD_CPUTIME_ID);
        const double allBefore = cpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
        desk.tick();
        mainSeconds += cpuSeconds(CLOCK_THREAD_CPUTIME_ID) - mainBefore;
        allSeconds += cpuSeconds(CLOCK_PROCESS_CPUTIME_ID) - allBefore;
    }
    const auto ticks = static_cast<double>(state.iterations());
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
