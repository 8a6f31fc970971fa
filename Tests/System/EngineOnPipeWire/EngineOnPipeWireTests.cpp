// The engine on a real audio server: many devices at once, and the server's end.

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "AudioIO/PipeWire/PipeWireInputEngine.h"
#include "Engine/Clock.h"
#include "Engine/KernelTickTimer.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Support/MemoryStore.h"
#include "Support/PrivateAudioServer.h"
#include "TarvaneApp/Engine/EngineInsides.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace EngineOnPipeWireTests {

using namespace TarvaneApp;
using TarvaneKit::AudioInputDevice;
using TarvaneKit::MultiChannelAudioSource;
using TarvaneKit::PipeWireInputEngine;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

constexpr int deviceCount = 8;
constexpr int channelsPerDevice = 8;

// The machine's audio, which remembers the sources that the engine holds open.
class CountedAudioSystem final : public TarvaneKit::PipeWireAudioSystem {
  public:
    std::unique_ptr<MultiChannelAudioSource> makeDeviceSource(
        const std::optional<AudioInputDevice>& device) override {
        auto source = PipeWireAudioSystem::makeDeviceSource(device);
        const std::scoped_lock hold(lock_);
        sources.push_back(dynamic_cast<PipeWireInputEngine*>(source.get()));
        return source;
    }

    std::vector<PipeWireInputEngine*> sources;

  private:
    std::mutex lock_;
};

std::string deviceName(int device) {
    return fmt::format("tarvane.desk{}", device);
}

// Each input has a level of its own: -10 dBFS for the first, half a dB less for each that follows.
double tonePeakDBFS(int device, int channel) {
    return -10.0 - 0.5 * (device * channelsPerDevice + channel);
}

std::vector<std::unique_ptr<ToneDevice>> plugInDesks() {
    std::vector<std::unique_ptr<ToneDevice>> desks;
    for (int device = 0; device < deviceCount; ++device) {
        std::vector<std::string> options{"--name", deviceName(device), "--channels",
                                         std::to_string(channelsPerDevice)};
        for (int channel = 0; channel < channelsPerDevice; ++channel) {
            options.insert(options.end(), {"--tone", fmt::format("{}=1000:{}", channel + 1,
                                                                 tonePeakDBFS(device, channel))});
        }
        desks.push_back(std::make_unique<ToneDevice>(options));
    }
    return desks;
}

class EngineOnPipeWireTests : public testing::Test {
  protected:
    EngineOnPipeWireTests()
        : engine({.audio = audio, .store = store, .clock = clock, .tickTimer = tickTimer}) {
        engine.splWeighting.set(Weighting::z);
        engine.splTimeWeighting.set(TimeWeighting::fast);
    }

    static void runFor(double seconds) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
        while (std::chrono::steady_clock::now() < end) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
    }
    static bool runUntil(const std::function<bool()>& condition) {
        return eventually([&] {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            return condition();
        });
    }

    void addChannelOnEachInput() {
        std::vector<ChannelConfig> channels;
        for (int device = 0; device < deviceCount; ++device) {
            deviceNamed(audio, deviceName(device));
            for (int channel = 0; channel < channelsPerDevice; ++channel) {
                ChannelConfig config;
                config.name = fmt::format("Desk {} input {}", device + 1, channel + 1);
                config.deviceUID = deviceName(device);
                config.channelIndex = channel;
                config.measuresLoudness = channel == 0;
                channels.push_back(config);
            }
        }
        engine.extraChannels.set(std::move(channels));
        engine.refreshDevices();
        engine.selectedDeviceUID.set(deviceName(0));
        engine.mainInputIsDigital.set(false);
    }
    void start() {
        engine.start();
        ASSERT_TRUE(runUntil([&] { return !engine.isStarting(); }));
        ASSERT_TRUE(engine.isRunning()) << engine.errorMessage().value_or("");
    }
    void expectEachInputsLevel() {
        const auto metric = SPLMetric::spl(Weighting::z, TimeWeighting::fast);
        for (std::size_t i = 0; i < engine.extraChannels().size(); ++i) {
            const ChannelConfig& config = engine.extraChannels()[i];
            const auto& processor = TarvaneTests::EngineInsides::processor(engine, config.id);
            ASSERT_TRUE(processor) << config.name;
            const int number = static_cast<int>(i);
            // A block that a busy machine kept from us costs a Fast meter a part of a dB for a
            // moment.
            const double level =
                sineLevelDB(tonePeakDBFS(number / channelsPerDevice, number % channelsPerDevice));
            EXPECT_TRUE(runUntil([&] { return std::abs(processor->value(metric) - level) < 0.05; }))
                << config.name << " reads " << processor->value(metric) << ", not " << level;
        }
    }

    PrivateAudioServer server;
    CountedAudioSystem audio;
    MemoryStore store;
    SystemClock clock;
    KernelTickTimer tickTimer;
    MeterEngine engine;
};

TEST_F(EngineOnPipeWireTests, sixtyFourChannelsMeterForAMinuteWhileSettingsChange) {
    const auto desks = plugInDesks();
    addChannelOnEachInput();
    std::vector<UUID> ids;
    for (const ChannelConfig& config : engine.extraChannels()) {
        ids.push_back(config.id);
    }
    ChannelDemandRegistration spectra;
    spectra.update(engine, ids, ChannelDemand::rta);
    start();

    std::mt19937 random(64);
    const auto anyID = [&] { return ids[random() % ids.size()]; };
    std::size_t bytesEarly = 0;
    constexpr int steps = 300;
    for (int step = 0; step < steps; ++step) {
        switch (random() % 6) {
            case 0:
                engine.configureLeq(random() % 2 == 0 ? Weighting::a : Weighting::c, 60.0);
                break;
            case 1:
                engine.splTimeWeighting.set(random() % 2 == 0 ? TimeWeighting::fast
                                                              : TimeWeighting::slow);
                break;
            case 2:
                engine.updateDisplay(anyID(), [&](ChannelDisplaySettings& display) {
                    display.octaveFraction = random() % 2 == 0
                                                 ? TarvaneKit::OctaveFraction::fortyEighthOctave
                                                 : TarvaneKit::OctaveFraction::oneOctave;
                });
                break;
            case 3:
                engine.resetMinMax();
                break;
            case 4: {
                auto channels = engine.extraChannels();
                auto& channel = channels[random() % channels.size()];
                channel.name += "'";
                channel.measuresLoudness = !channel.measuresLoudness;
                engine.extraChannels.set(std::move(channels));
                break;
            }
            default:
                spectra.update(engine, {anyID(), anyID()}, ChannelDemand::rta);
        }
        runFor(60.0 / steps);
        if (step == steps / 3) {
            bytesEarly = mallinfo2().uordblks;
        }
    }
    const std::size_t bytesLate = mallinfo2().uordblks;
    EXPECT_LT(bytesLate, bytesEarly + (4U << 20U)) << "grows while it meters";

    ASSERT_TRUE(engine.isRunning()) << engine.errorMessage().value_or("");
    ASSERT_EQ(audio.sources.size(), static_cast<std::size_t>(deviceCount));
    for (const PipeWireInputEngine* source : audio.sources) {
        const auto statistics = source->statistics();
        EXPECT_EQ(statistics.droppedBlocks, 0) << "lost by us";
        // What the server didn't bring, for want of processor time, is told apart.
        RecordProperty("missedTicks", static_cast<int>(statistics.missedTicks));
        EXPECT_GT(statistics.frames, 30 * 48000);
    }
    expectEachInputsLevel();
}

TEST_F(EngineOnPipeWireTests, eightDevicesAreReadFromOneStart) {
    const auto desks = plugInDesks();
    addChannelOnEachInput();
    const auto millisecondsToFirstReadings = [&] {
        const auto began = std::chrono::steady_clock::now();
        engine.start();
        const auto metric = SPLMetric::spl(Weighting::z, TimeWeighting::fast);
        EXPECT_TRUE(runUntil([&] {
            return engine.isRunning() &&
                   std::ranges::all_of(engine.activeChannelInfos(), [&](const ChannelInfo& info) {
                       const auto& processor =
                           TarvaneTests::EngineInsides::processor(engine, info.id);
                       return processor && processor->value(metric) > -200.0;
                   });
        }));
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - began;
        engine.stop();
        return static_cast<int>(took.count());
    };
    RecordProperty("millisecondsForEightDevices", millisecondsToFirstReadings());
    engine.extraChannels.set({});
    RecordProperty("millisecondsForOneDevice", millisecondsToFirstReadings());
}

TEST_F(EngineOnPipeWireTests, theServersEndEndsTheRunAndItsReturnLetsItStartAgain) {
    auto desks = plugInDesks();
    addChannelOnEachInput();
    start();
    runFor(1.0);
    server.kill();
    ASSERT_TRUE(runUntil([&] { return !engine.isRunning(); }));
    EXPECT_EQ(engine.errorMessage(),
              TarvaneKit::description(TarvaneKit::AudioSourceLoss::serverLost));
    // Ended while nothing runs: no start succeeds, and none hangs.
    engine.dismissError();
    engine.start();
    ASSERT_TRUE(runUntil([&] { return !engine.isStarting(); }));
    EXPECT_FALSE(engine.isRunning());
    EXPECT_TRUE(engine.errorMessage());

    desks.clear();
    server.resume();
    desks = plugInDesks();
    for (int device = 0; device < deviceCount; ++device) {
        deviceNamed(audio, deviceName(device));
    }
    engine.refreshDevices();
    start();
    expectEachInputsLevel();
}

}  // namespace EngineOnPipeWireTests
}  // namespace TarvaneTests
