// An engine on made-up sources with a hand-driven clock.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <chrono>
#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <string>

#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryStore.h"
#include "TarvaneApp/Engine/EngineInsides.h"

namespace TarvaneTests {

/// A sine of `amplitude`, `frames` long, beginning at `from`.
inline std::vector<float> sine(double frequencyHz, double amplitude, int frames, int from = 0,
                               double sampleRate = 48000.0) {
    std::vector<float> samples(static_cast<std::size_t>(frames));
    for (int i = 0; i < frames; ++i) {
        samples[static_cast<std::size_t>(i)] = static_cast<float>(
            amplitude * std::sin(2.0 * std::numbers::pi * frequencyHz * (from + i) / sampleRate));
    }
    return samples;
}

class EngineFixture : public testing::Test {
  protected:
    EngineFixture() {
        audio.plugIn({.id = 40, .uid = "mic", .name = "Measurement Mic", .channelCount = 1});
        audio.plugIn({.id = 41, .uid = "desk", .name = "Desk", .channelCount = 8});
        audio.setDefaultInput(40);
        makeEngine();
    }

    /// Also what a restart of the program is: the store stays.
    void makeEngine() {
        engine.reset();
        engine = std::make_unique<TarvaneApp::MeterEngine>(TarvaneApp::MeterEngine::Environment{
            .audio = audio, .store = store, .clock = clock, .tickTimer = timer});
        engine->refreshDevices();
    }

    /// Runs the event loop until the condition holds. One that never does ends the test, with the
    /// line that waited for it.
    template <class Condition>
    static void waitUntil(Condition condition, const char* file = __builtin_FILE(),
                          int line = __builtin_LINE()) {
        const auto gaveUp = std::chrono::steady_clock::now() + std::chrono::minutes(2);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > gaveUp) {
                throw std::runtime_error("What " + std::string(file) + ":" + std::to_string(line) +
                                         " waits for never came.");
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
    }
    /// Lets everything that is already on its way arrive.
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents();
    }

    void start() {
        engine->start();
        waitUntil([&] { return !engine->isStarting(); });
    }

    /// One firing of the tick timer and its publication on the channel.
    void tick(const TarvaneKit::UUID& id = TarvaneKit::UUID::main()) {
        int publications = 0;
        const auto connection =
            QObject::connect(&engine->meterChannel(id).live, &TarvaneApp::LiveMeterData::willChange,
                             [&publications] { ++publications; });
        timer.fire();
        waitUntil([&] { return publications > 0; });
        QObject::disconnect(connection);
        settle();
    }

    TarvaneApp::ChannelConfig addChannel(const std::string& name,
                                         const std::optional<std::string>& uid, int index,
                                         std::optional<int> right = std::nullopt) {
        TarvaneApp::ChannelConfig config;
        config.name = name;
        config.deviceUID = uid;
        config.channelIndex = index;
        config.isStereo = right.has_value();
        config.rightChannelIndex = right.value_or(index + 1);
        auto channels = engine->extraChannels();
        channels.push_back(config);
        engine->extraChannels.set(std::move(channels));
        return config;
    }

    TarvaneApp::LiveMeterData& live(const TarvaneKit::UUID& id = TarvaneKit::UUID::main()) {
        return EngineInsides::channel(*engine, id).live;
    }
    std::shared_ptr<TarvaneApp::ChannelProcessor>& processorOf(
        const TarvaneKit::UUID& id = TarvaneKit::UUID::main()) {
        return EngineInsides::processor(*engine, id);
    }

    FakeAudioSystem audio;
    MemoryStore store;
    ManualClock clock;
    ManualTickTimer timer;
    std::unique_ptr<TarvaneApp::MeterEngine> engine;
};

}  // namespace TarvaneTests
