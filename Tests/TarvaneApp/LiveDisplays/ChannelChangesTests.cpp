// What a live display of a channel learns of without a publication: whatever changes what the
// channel is or how it is shown.

#include "Engine/ChannelChanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "LiveDisplays/LiveSPLReadoutView.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelChangesTests {

using TarvaneKit::UUID;

constexpr std::uint32_t desk = 41;

class ChannelChangesTests : public TarvaneTests::EngineFixture {
  protected:
    ChannelChangesTests() {
        turnGainTo(-10.0);
        id = addChannel("B", "desk", 0).id;
    }

    void turnGainTo(double gainDB) {
        TarvaneTests::FakeControls controls;
        for (int i = 0; i < 8; ++i) {
            controls.gainsDB[i] = gainDB;
        }
        audio.setControls(desk, controls);
        settle();
        settle();
    }
    /// 94 dB SPL for -6 dBFS, calibrated at the gain of now; shown in dBFS.
    void calibrateInDBFS() {
        engine->updateChannel(id, [](ChannelConfig& channel) {
            channel.isDigital = false;
            channel.calibration.emplace().reference =
                TarvaneKit::ReferenceCalibration{.offsetDB = 100.0,
                                                 .referenceDeviceUID = {},
                                                 .referenceDeviceName = {},
                                                 .calibratedAt = {},
                                                 .inputGainDB = -10.0};
        });
        engine->updateDisplay(id, [](auto& display) { display.showsDBFS = true; });
    }
    void playTone() {
        ASSERT_TRUE(audio.feed(
            "desk", std::vector<std::vector<float>>(8, TarvaneTests::sine(1000.0, 0.1, 96000))));
        tick(id);
    }
    std::vector<std::optional<UUID>> changesDuring(const std::function<void()>& action) {
        std::vector<std::optional<UUID>> told;
        QObject context;
        QObject::connect(&engine->channelChanges(), &ChannelChanges::changed, &context,
                         [&](const std::optional<UUID>& channel) { told.push_back(channel); });
        action();
        return told;
    }
    bool areTold(const std::optional<UUID>& channel, const std::function<void()>& action) {
        const auto told = changesDuring(action);
        return std::ranges::find(told, channel) != told.end();
    }

    /// As an assignment would tell its watchers.
    static void tell(const SettingBase& setting) {
        Q_EMIT const_cast<ChangeNotifier&>(setting.changes()).changed();
    }

    UUID id = UUID::main();
};

// A sine of amplitude 0.1 is at 20 log10(0.1 / sqrt 2) = -23.01 dBFS whatever the gain is said to
// be: the calibrated level moves with the gain, and the way back to full scale has to move along.
TEST_F(ChannelChangesTests, theLargeValueInDBFSFollowsATurnedGain) {
    calibrateInDBFS();
    LiveSPLReadoutView readout(*engine, id);
    start();
    playTone();
    EXPECT_NEAR(readout.readout().valueDB, -23.01, 0.01);
    turnGainTo(-20.0);
    playTone();
    EXPECT_NEAR(readout.readout().valueDB, -23.01, 0.01);
}

// Rows are in dB SPL, the range in dBFS: -100 dBFS is 0 dB SPL with an offset of 100, and 10 more
// once the gain is 10 lower.
TEST_F(ChannelChangesTests, theSpectrogramsColoursFollowATurnedGain) {
    calibrateInDBFS();
    const LiveSpectrogramView spectrogram(*engine, id);
    EXPECT_EQ(spectrogram.view().floorDB, 0.0);
    turnGainTo(-20.0);
    EXPECT_EQ(spectrogram.view().floorDB, 10.0);
}

TEST_F(ChannelChangesTests, aReadoutOfALostSourceShowsNoProgress) {
    engine->updateDisplay(id, [](auto& display) { display.metricMode = MetricMode::leq; });
    LiveSPLReadoutView readout(*engine, id);
    start();
    playTone();
    EXPECT_TRUE(readout.readout().leqElapsedFraction);
    audio.lose("desk", TarvaneKit::AudioSourceLoss::deviceRemoved);
    settle();
    settle();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_FALSE(readout.readout().leqElapsedFraction);
}

TEST_F(ChannelChangesTests, anEditOfAChannelIsToldOfThatChannel) {
    const UUID other = addChannel("C", "desk", 1).id;
    const auto told = changesDuring([&] { engine->setChannelColor({1.0, 0.0, 0.0, 1.0}, other); });
    EXPECT_EQ(told, std::vector{std::optional(other)});
    EXPECT_TRUE(changesDuring([&] { engine->extraChannels.set(engine->extraChannels()); }).empty());
    EXPECT_TRUE(areTold(other, [&] { engine->removeChannel(other); }));
}

// Settings say of themselves whether a channel's display may depend on them, so that a new one
// can't be forgotten.
TEST_F(ChannelChangesTests, everySettingOfChannelsIsToldAndNoneOfWindows) {
    for (const SettingBase* setting : engine->channelSettings()) {
        if (setting != &engine->extraChannels) {
            EXPECT_TRUE(areTold(std::nullopt, [&] { tell(*setting); })) << setting->key();
        }
    }
    for (const SettingBase* setting : engine->windowSettings()) {
        EXPECT_TRUE(changesDuring([&] { tell(*setting); }).empty()) << setting->key();
    }
}

TEST_F(ChannelChangesTests, theRunIsTold) {
    EXPECT_TRUE(areTold(std::nullopt, [&] { start(); }));
    EXPECT_TRUE(areTold(std::nullopt, [&] { engine->pause(); }));
    EXPECT_TRUE(areTold(std::nullopt, [&] { engine->resume(); }));
    EXPECT_TRUE(areTold(id, [&] {
        audio.lose("desk", TarvaneKit::AudioSourceLoss::deviceRemoved);
        settle();
    }));
    EXPECT_TRUE(areTold(std::nullopt, [&] { engine->stop(); }));
}

}  // namespace ChannelChangesTests
}  // namespace TarvaneApp
