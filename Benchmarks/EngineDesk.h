// An engine at work on stereo channels of one made-up device, each shown in every way. Time is in
// the caller's hand, so that an hour takes as long as its sums.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <memory>
#include <utility>
#include <vector>

#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryStore.h"
#include "Support/Signals.h"

namespace TarvaneBenchmarks {

inline void ensureApplication() {
    static int argc = 1;
    static char name[] = "benchmark";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
}

class EngineDesk {
  public:
    /// `[side][frame]`
    using Block = std::vector<std::vector<float>>;

    static constexpr double ticksPerSecond = 60.0;
    /// At 48 kHz.
    static constexpr int framesPerTick = 800;

    static Block noise(int frames) {
        return {TarvaneKit::Testing::whiteNoise(frames, 0.1, 1),
                TarvaneKit::Testing::whiteNoise(frames, 0.1, 2)};
    }

    /// Started, and fed nothing yet. There is an application already.
    explicit EngineDesk(int channelCount) {
        audio_.plugIn({.id = 40, .uid = "desk", .name = "Desk", .channelCount = 2});
        audio_.setDefaultInput(40);
        engine_ = std::make_unique<TarvaneApp::MeterEngine>(TarvaneApp::MeterEngine::Environment{
            .audio = audio_, .store = store_, .clock = clock_, .tickTimer = timer_});
        engine_->refreshDevices();
        engine_->selectedDeviceUID.set("desk");
        std::vector<TarvaneApp::ChannelConfig> channels(static_cast<std::size_t>(channelCount - 1));
        std::vector<TarvaneKit::UUID> ids{TarvaneKit::UUID::main()};
        TarvaneApp::ChannelDisplaySettings display;
        display.octaveFraction = TarvaneKit::OctaveFraction::fortyEighthOctave;
        for (TarvaneApp::ChannelConfig& channel : channels) {
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
        spectra_.update(*engine_, ids, TarvaneApp::ChannelDemand::rta);
        spectrograms_.update(*engine_, ids, TarvaneApp::ChannelDemand::spectrogram);
        QObject::connect(&engine_->meterChannel(ids.back()).live,
                         &TarvaneApp::LiveMeterData::willChange, [this] { ++publications_; });
        engine_->start();
        while (engine_->isStarting()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    TarvaneApp::MeterEngine& engine() { return *engine_; }

    void feed(const Block& block) { audio_.feed("desk", block); }

    /// Returns when the last channel's analysis is published.
    void tick() {
        clock_.advance(1.0 / ticksPerSecond);
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
    std::unique_ptr<TarvaneApp::MeterEngine> engine_;
    TarvaneApp::ChannelDemandRegistration spectra_;
    TarvaneApp::ChannelDemandRegistration spectrograms_;
    int publications_ = 0;
};

}  // namespace TarvaneBenchmarks
