// What a tick's analysis leaves in a channel's live data, and that nothing is computed for nobody.

#include <numbers>

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;
using TarvaneTests::sine;

constexpr double tickSeconds = 1.0 / 60.0;
constexpr int framesPerTick = 800;

class RunPublicationTests : public TarvaneTests::EngineFixture {
  protected:
    /// A channel on the first input of the desk.
    UUID add(bool ringOutEnabled, bool measuresLoudness = false) {
        addChannel("Stage", "desk", 0);
        auto channels = engine->extraChannels();
        channels[0].ringOutEnabled = ringOutEnabled;
        channels[0].measuresLoudness = measuresLoudness;
        const UUID id = channels[0].id;
        engine->extraChannels.set(std::move(channels));
        return id;
    }
    void edit(const UUID& id, const std::function<void(ChannelConfig&)>& change) {
        auto channels = engine->extraChannels();
        change(*std::ranges::find(channels, id, &ChannelConfig::id));
        engine->extraChannels.set(std::move(channels));
    }
    /// One tick of real time with that on the desk's first input.
    void pass(const UUID& id, const std::vector<float>& samples) {
        std::vector<std::vector<float>> block(8, std::vector<float>(samples.size(), 0.0F));
        block[0] = samples;
        audio.feed("desk", block);
        clock.advance(tickSeconds);
        tick(id);
    }
    /// A system on its way into feedback at 1250 Hz, until its alert stands.
    void ringUntilAlert(const UUID& id) {
        for (int i = 0; i < 300 && !live(id).currentRingAlert; ++i) {
            std::vector<float> block(framesPerTick);
            for (float& sample : block) {
                sample = static_cast<float>(amplitude_ * std::sin(phase_));
                phase_ += 2.0 * std::numbers::pi * 1250.0 / 48000.0;
                amplitude_ *= std::pow(10.0, 8.0 / 20.0 / 48000.0);
            }
            pass(id, block);
        }
        ASSERT_TRUE(live(id).currentRingAlert);
    }
    /// Silence, until the detector has let go of what rang.
    void hushUntilItEnds(const UUID& id) {
        for (int i = 0; i < 60 && live(id).currentRingAlert; ++i) {
            pass(id, std::vector<float>(framesPerTick, 0.0F));
        }
        ASSERT_FALSE(live(id).currentRingAlert);
    }

  private:
    double phase_ = 0.0;
    double amplitude_ = 0.003;
};

TEST_F(RunPublicationTests, withoutADisplayNothingIsComputed) {
    start();
    audio.feed("", {sine(1500.0, 0.1, 8192)});
    tick();
    EXPECT_TRUE(live().lineSpectrumDB.empty());
    EXPECT_EQ(live().spectrogramRowsAdded, 0);
}

TEST_F(RunPublicationTests, aDisplayedSpectrumArrivesWithBandsLinesAndHolds) {
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    audio.feed("", {sine(1500.0, 0.1, 8192)});
    tick();
    // Line 128 of 4096 at 48 kHz; the display settings tilt it by 10 log10(1.5).
    EXPECT_NEAR(live().lineSpectrumDB.at(128), -20.0 + 10.0 * std::log10(1.5), 0.001);
    EXPECT_EQ(live().linePeakHoldDB.size(), 2048U);
    EXPECT_EQ(live().bandLevelsDB.size(), 31U);
    EXPECT_EQ(live().bandPeakHoldDB.size(), 31U);
    EXPECT_EQ(live().spectrogramRowsAdded, 0);
}

TEST_F(RunPublicationTests, everyPublicationBringsTheNewArrays) {
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    double last = 0.0;
    for (int i = 1; i < 6; ++i) {
        audio.feed("", {sine(1500.0, 0.1 / i, 8192)});
        clock.advance(100.0);
        tick();
        const double level = live().lineSpectrumDB.at(128);
        EXPECT_NEAR(level, 20.0 * std::log10(0.1 / i * std::sqrt(1.5)), 0.001);
        EXPECT_NE(level, last);
        last = level;
    }
}

TEST_F(RunPublicationTests, aChannelsOwnDisplaySettingsShapeItsSpectrum) {
    const UUID id = add(false);
    engine->updateDisplay(id, [](auto& display) {
        display.octaveFraction = TarvaneKit::OctaveFraction::oneOctave;
        display.octaveNormalized = false;
    });
    engine->addDemand(ChannelDemand::rta, id);
    start();
    pass(id, sine(1500.0, 0.1, 8192));
    EXPECT_EQ(live(id).bandLevelsDB.size(), 10U);
    EXPECT_NEAR(live(id).lineSpectrumDB.at(128), -20.0, 0.001);
    EXPECT_TRUE(live().lineSpectrumDB.empty());
}

TEST_F(RunPublicationTests, aNewCalibrationMovesTheSpectrumByTheNextTick) {
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    audio.feed("", {sine(1500.0, 0.1, 8192)});
    tick();
    const double before = live().lineSpectrumDB.at(128);
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 100.0,
                                                         .referenceDeviceUID = {},
                                                         .referenceDeviceName = {},
                                                         .calibratedAt = {},
                                                         .inputGainDB = {}};
    engine->calibration.set(profile);
    clock.advance(100.0);
    tick();
    EXPECT_NEAR(live().lineSpectrumDB.at(128), before + 100.0, 0.001);
}

TEST_F(RunPublicationTests, theSpectrumsTimeWeightingIsTheSettings) {
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    const auto fallAfterATick = [&](TimeWeighting weighting) {
        engine->rtaTimeWeighting.set(weighting);
        audio.feed("", {sine(1500.0, 0.1, 8192)});
        clock.advance(tickSeconds);
        tick();
        const double before = live().lineSpectrumDB.at(128);
        audio.feed("", {std::vector<float>(8192, 0.0F)});
        clock.advance(tickSeconds);
        tick();
        return before - live().lineSpectrumDB.at(128);
    };
    const double dBPerSecondOfTau = 10.0 * std::log10(std::exp(1.0));
    EXPECT_NEAR(fallAfterATick(TimeWeighting::fast), tickSeconds / 0.125 * dBPerSecondOfTau, 1e-3);
    EXPECT_NEAR(fallAfterATick(TimeWeighting::slow), tickSeconds / 1.0 * dBPerSecondOfTau, 1e-3);
    EXPECT_NEAR(fallAfterATick(TimeWeighting::infinite), 10.0 * std::log10(2.0), 1e-3);
    EXPECT_GT(fallAfterATick(TimeWeighting::none), 90.0);
}

TEST_F(RunPublicationTests, theSpectrogramKeepsTwoMinutesAndCountsOn) {
    engine->addDemand(ChannelDemand::spectrogram, UUID::main());
    start();
    audio.feed("", {sine(1000.0, 0.1, 8192)});
    for (int i = 0; i < 7200; ++i) {
        tick();
        clock.advance(tickSeconds);
    }
    EXPECT_EQ(live().spectrogramHistory.size(), 7200U);
    EXPECT_EQ(live().spectrogramRowsAdded, 7200);
    const std::vector<float> second = live().spectrogramHistory[1];
    tick();
    EXPECT_EQ(live().spectrogramHistory.size(), 7200U);
    EXPECT_EQ(live().spectrogramRowsAdded, 7201);
    EXPECT_EQ(live().spectrogramHistory[0], second);
    EXPECT_EQ(live().spectrogramHistory[0].size(), 1024U);

    engine->stop();
    EXPECT_EQ(live().spectrogramHistory.size(), 7200U);
    start();
    EXPECT_TRUE(live().spectrogramHistory.empty());
}

TEST_F(RunPublicationTests, aRingIsToldAtOnceAndHeldThreeSecondsAfterItsEnd) {
    const UUID id = add(true);
    engine->addDemand(ChannelDemand::rta, id);
    start();
    ringUntilAlert(id);
    EXPECT_NEAR(live(id).currentRingAlert->frequencyHz, 1250.0, 2.0);
    EXPECT_EQ(live(id).heldRingAlert, live(id).currentRingAlert);
    const auto held = live(id).heldRingAlert;
    hushUntilItEnds(id);
    EXPECT_TRUE(live(id).heldRingAlert);
    EXPECT_EQ(live(id).heldRingAlert->note.name, held->note.name);
    clock.advance(3.0 - 2.0 * tickSeconds);
    pass(id, std::vector<float>(framesPerTick, 0.0F));
    EXPECT_TRUE(live(id).heldRingAlert);
    pass(id, std::vector<float>(framesPerTick, 0.0F));
    pass(id, std::vector<float>(framesPerTick, 0.0F));
    EXPECT_FALSE(live(id).heldRingAlert);
}

TEST_F(RunPublicationTests, aDetectorThatDoesntRunLeavesTheAlertsAsTheyStand) {
    const UUID id = add(true);
    engine->addDemand(ChannelDemand::rta, id);
    start();
    ringUntilAlert(id);
    const auto before = live(id).currentRingAlert;
    // Nobody looks at the spectrum any more; ten seconds pass.
    engine->removeDemand(ChannelDemand::rta, id);
    clock.advance(10.0);
    pass(id, std::vector<float>(framesPerTick, 0.0F));
    EXPECT_EQ(live(id).currentRingAlert, before);
    EXPECT_EQ(live(id).heldRingAlert, before);
    // Somebody looks again: the held one is long over.
    engine->addDemand(ChannelDemand::rta, id);
    pass(id, std::vector<float>(framesPerTick, 0.0F));
    EXPECT_FALSE(live(id).currentRingAlert);
    EXPECT_FALSE(live(id).heldRingAlert);
}

TEST_F(RunPublicationTests, ringOutSwitchedOffRunsNoDetector) {
    const UUID id = add(true);
    engine->addDemand(ChannelDemand::rta, id);
    start();
    ringUntilAlert(id);
    edit(id, [](auto& channel) { channel.ringOutEnabled = false; });
    const auto before = live(id).heldRingAlert;
    clock.advance(10.0);
    pass(id, std::vector<float>(framesPerTick, 0.0F));
    EXPECT_EQ(live(id).heldRingAlert, before);
}

TEST_F(RunPublicationTests, loudnessIsPublishedWhileItIsMeasured) {
    const UUID id = add(false, true);
    start();
    pass(id, sine(997.0, 0.1, 4 * 48000));
    ASSERT_TRUE(live(id).loudness);
    // BS.1770-4: a 997 Hz sine of amplitude 0.1 on one channel.
    EXPECT_NEAR(live(id).loudness->momentary, -23.01, 0.01);
    EXPECT_NEAR(live(id).loudness->integrated, -23.01, 0.01);
    EXPECT_FALSE(live().loudness);
}

TEST_F(RunPublicationTests, theSessionsLevelsAreRecordedInEveryMetric) {
    engine->splTimeWeighting.set(TimeWeighting::fast);
    start();
    auto& history = engine->meterChannel(UUID::main()).levelHistory();
    const int revision = live().levelHistoryRevision;
    EXPECT_EQ(history.sessionStartDate(), clock.now());
    for (int i = 0; i < 60; ++i) {
        audio.feed("", {sine(1000.0, 0.1, framesPerTick, framesPerTick * i)});
        clock.advance(tickSeconds);
        tick();
    }
    EXPECT_NEAR(history.duration(), 1.0, 1e-6);
    EXPECT_NEAR(live().levelHistoryRevision - revision, 9.5, 1.0);
    const auto metric = history.index(SPLMetric::spl(Weighting::z, TimeWeighting::fast));
    ASSERT_TRUE(metric);
    EXPECT_NEAR(*history.latestValue(*metric), -23.01, 0.05);
    EXPECT_EQ(engine->meterChannel(UUID::main()).levelHistoryInputDescription, "Default Input");
}

TEST_F(RunPublicationTests, aWallClockThatIsSetMovesNothingButDates) {
    engine->addDemand(ChannelDemand::rta, UUID::main());
    engine->addDemand(ChannelDemand::spectrogram, UUID::main());
    start();
    for (int i = 0; i < 30; ++i) {
        if (i == 15) {
            clock.setWallClockBy(-7200.0);
        }
        audio.feed("", {sine(1500.0, 0.1, 8192)});
        clock.advance(tickSeconds);
        tick();
    }
    EXPECT_NEAR(live().lineSpectrumDB.at(128), -20.0 + 10.0 * std::log10(1.5), 0.001);
    EXPECT_EQ(live().spectrogramRowsAdded, 30);
    EXPECT_NEAR(engine->meterChannel(UUID::main()).levelHistory().duration(), 0.5, 1e-6);
    engine->stop();
    start();
    EXPECT_EQ(engine->meterChannel(UUID::main()).levelHistory().sessionStartDate(), clock.now());
}

TEST_F(RunPublicationTests, aPauseTakesNoTimeOfTheAveragesAndRestartsTheWindow) {
    engine->rtaTimeWeighting.set(TimeWeighting::fast);
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    audio.feed("", {sine(1500.0, 0.1, 8192)});
    tick();
    engine->pause();
    audio.feed("", {sine(1500.0, 1.0, 8192)});
    clock.advance(60.0);
    engine->resume();
    const auto before = live().lineSpectrumDB;
    tick();
    EXPECT_EQ(live().lineSpectrumDB, before);  // no full window yet
    audio.feed("", {std::vector<float>(8192, 0.0F)});
    clock.advance(tickSeconds);
    tick();
    EXPECT_NEAR(live().lineSpectrumDB.at(128),
                before.at(128) + 10.0 * std::log10(std::exp(-tickSeconds / 0.125)), 0.001);
}

TEST_F(RunPublicationTests, aSourceThatIsLostLeavesNoFrozenSpectrum) {
    const UUID id = add(true, true);
    engine->addDemand(ChannelDemand::rta, id);
    start();
    pass(id, sine(1500.0, 0.1, 8192));
    ASSERT_FALSE(live(id).lineSpectrumDB.empty());
    audio.lose("desk", TarvaneKit::AudioSourceLoss::deviceRemoved);
    waitUntil([&] { return engine->errorMessage().has_value(); });
    EXPECT_TRUE(live(id).lineSpectrumDB.empty());
    EXPECT_TRUE(live(id).bandPeakHoldDB.empty());
    EXPECT_FALSE(live(id).loudness);
}

TEST_F(RunPublicationTests, demandLastsUntilTheLastDisplayHasGone) {
    const UUID id = add(false);
    {
        ChannelDemandRegistration first;
        first.update(*engine, {id, UUID::main()}, ChannelDemand::rta);
        {
            ChannelDemandRegistration second;
            second.update(*engine, {id}, ChannelDemand::rta);
            EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, id));
            EXPECT_FALSE(engine->isDemanded(ChannelDemand::spectrogram, id));
        }
        EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, id));
        first.update(*engine, {id}, ChannelDemand::spectrogram);
        EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, id));
        EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
        EXPECT_TRUE(engine->isDemanded(ChannelDemand::spectrogram, id));
    }
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::spectrogram, id));
    engine->removeDemand(ChannelDemand::rta, id);
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, id));
}

TEST_F(RunPublicationTests, aRegistrationMayOutliveTheEngine) {
    ChannelDemandRegistration registration;
    registration.update(*engine, {UUID::main()}, ChannelDemand::rta);
    engine.reset();
    registration.clear();
    makeEngine();
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
}

TEST_F(RunPublicationTests, demandStaysAcrossStopAndStart) {
    ChannelDemandRegistration registration;
    registration.update(*engine, {UUID::main()}, ChannelDemand::rta);
    for (int run = 0; run < 2; ++run) {
        start();
        audio.feed("", {sine(1500.0, 0.1, 8192)});
        live().lineSpectrumDB.clear();
        tick();
        EXPECT_EQ(live().lineSpectrumDB.size(), 2048U);
        engine->stop();
    }
}

}  // namespace
}  // namespace TarvaneApp
