// What a tick's analysis leaves in a channel's live data, and that nothing is computed for nobody.

#include <numbers>

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace RunPublicationTests {

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
    /// As if the detector had found one.
    void showRing(const UUID& id) {
        live(id).currentRingAlert = TarvaneKit::RingAlert{.id = UUID::random(),
                                                          .frequencyHz = 1000.0,
                                                          .note = {},
                                                          .suggestedCutDB = -6.0,
                                                          .suggestedQ = 10.0,
                                                          .bandwidthHz = 50.0,
                                                          .date = clock.now()};
        live(id).heldRingAlert = live(id).currentRingAlert;
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

// The window stands still for a second, the audio doesn't.
TEST_F(RunPublicationTests, aDisplayThatIsLateHasMissedNoLevel) {
    engine->splWeighting.set(Weighting::z);
    engine->splTimeWeighting.set(TimeWeighting::fast);
    start();
    const auto& history = engine->meterChannel(UUID::main()).levelHistory();
    const int metric = history.index(SPLMetric::spl(Weighting::z, TimeWeighting::fast)).value();
    constexpr int block = 240;
    for (int i = 0; i < 48000 / block; ++i) {
        const bool isLoud = i >= 96 && i < 104;  // 40 ms, half a second in
        audio.feed("", {sine(1000.0, isLoud ? 1.0 : 0.001, block, block * i)});
    }
    clock.advance(1.0);
    tick();
    for (double at = 0.05; at < 1.0; at += 0.1) {
        EXPECT_TRUE(history.value(metric, at)) << at;
    }
    const auto max = history.extremes(metric).max.value();
    EXPECT_NEAR(max.levelDB, -3.01 + 10.0 * std::log10(1.0 - std::exp(-0.04 / 0.125)), 0.6);
    EXPECT_NEAR(max.elapsed, 0.52, 0.026);
    EXPECT_LT(live().currentSPLValueDB, max.levelDB - 10.0);
    EXPECT_EQ(live().maxSPLValueDB, max.levelDB);
}

TEST_F(RunPublicationTests, aDisplayThatKeepsUpRecordsOncePerTick) {
    start();
    const auto& history = engine->meterChannel(UUID::main()).levelHistory();
    const int metric = history.index(SPLMetric::spl(Weighting::a, TimeWeighting::fast)).value();
    for (int i = 0; i < 60; ++i) {
        audio.feed("", {sine(1000.0, 0.1, 400, framesPerTick * i)});
        audio.feed("", {sine(1000.0, 0.1, 400, framesPerTick * i + 400)});
        clock.advance(tickSeconds);
        tick();
        ASSERT_EQ(history.latestValue(metric),
                  processorOf()->value(history.metrics()[static_cast<std::size_t>(metric)]));
        ASSERT_NEAR(history.duration(), tickSeconds * (i + 1), 1e-6);
    }
}

TEST_F(RunPublicationTests, aBlockLongerThanABucketLeavesNoneEmpty) {
    start();
    const auto& history = engine->meterChannel(UUID::main()).levelHistory();
    const int metric = history.index(SPLMetric::spl(Weighting::z, TimeWeighting::fast)).value();
    for (int i = 0; i < 6; ++i) {
        audio.feed("", {sine(1000.0, 0.1, 16384, 16384 * i)});
        clock.advance(16384.0 / 48000.0);
        tick();
    }
    for (double at = 0.05; at < 2.0; at += 0.1) {
        EXPECT_TRUE(history.value(metric, at)) << at;
    }
}

TEST_F(RunPublicationTests, aGapInTheHistoryIsAPauseOrNoAudio) {
    start();
    const auto& history = engine->meterChannel(UUID::main()).levelHistory();
    const int metric = history.index(SPLMetric::spl(Weighting::z, TimeWeighting::fast)).value();
    const auto second = [&](bool hasAudio) {
        for (int i = 0; i < 60; ++i) {
            if (hasAudio) {
                audio.feed("", {sine(1000.0, 0.1, framesPerTick, framesPerTick * i)});
            }
            clock.advance(tickSeconds);
            tick();
        }
    };
    second(true);
    engine->pause();
    audio.feed("", {sine(1000.0, 1.0, 48000)});
    clock.advance(1.0);
    engine->resume();
    second(true);
    second(false);
    second(true);
    const auto isThere = [&](double at) { return history.value(metric, at).has_value(); };
    EXPECT_TRUE(isThere(0.95));
    EXPECT_FALSE(isThere(1.15));
    EXPECT_FALSE(isThere(1.95));
    EXPECT_TRUE(isThere(2.05));
    EXPECT_TRUE(isThere(2.95));
    EXPECT_FALSE(isThere(3.15));
    EXPECT_FALSE(isThere(3.95));
    EXPECT_TRUE(isThere(4.95));
    EXPECT_NEAR(history.recordedSeconds(metric), 3.0, 0.4);
}

// Where audio goes on behind a hole there is a step, which the weightings turn into a click.
TEST_F(RunPublicationTests, lostAudioIsToldAndItsClickCountsIntoNothing) {
    engine->metricMode.set(MetricMode::peak);
    engine->peakWeighting.set(Weighting::c);
    start();
    const auto feed = [&](double level) {
        for (int i = 0; i < 120; ++i) {
            auto samples = sine(1000.0, 0.01, framesPerTick, framesPerTick * i);
            for (float& sample : samples) {
                sample += static_cast<float>(level);
            }
            audio.feed("", {samples});
            clock.advance(tickSeconds);
            tick();
        }
    };
    feed(-0.5);
    engine->resetMinMax();
    feed(-0.5);
    const double before = live().maxSPLValueDB;
    EXPECT_NEAR(before, -40.0, 0.2);
    EXPECT_TRUE(live().lostAudio.empty());
    audio.loseAudio("", 480);
    feed(0.5);
    EXPECT_NEAR(live().maxSPLValueDB, before, 0.1);
    ASSERT_EQ(live().lostAudio.size(), 1U);
    EXPECT_NEAR(live().lostAudio[0].elapsed, 4.0, 2.0 * tickSeconds);
    EXPECT_DOUBLE_EQ(live().lostAudio[0].seconds, 0.01);
    EXPECT_EQ(live().lostAudio[0].count, 1);
    // A source that falls short all the time is measured all the same.
    for (int i = 0; i < 60; ++i) {
        audio.loseAudio("", 480);
        audio.feed("", {sine(1000.0, 0.5, framesPerTick, framesPerTick * i)});
        clock.advance(tickSeconds);
        tick();
    }
    EXPECT_GT(live().currentSPLValueDB, -7.0);
    EXPECT_EQ(live().lostAudio.size(), 61U);
    engine->stop();
    EXPECT_EQ(live().lostAudio.size(), 61U);
    start();
    EXPECT_TRUE(live().lostAudio.empty());
}

TEST_F(RunPublicationTests, manyHolesAreToldTogether) {
    start();
    for (int i = 0; i < 1500; ++i) {
        audio.loseAudio("", 48);
    }
    audio.feed("", {sine(1000.0, 0.5, framesPerTick)});
    clock.advance(10.0);
    tick();
    int count = 0;
    double seconds = 0.0;
    for (const LostAudio& lost : live().lostAudio) {
        count += lost.count;
        seconds += lost.seconds;
    }
    EXPECT_EQ(count, 1500);
    EXPECT_NEAR(seconds, 1.5, 1e-9);
    EXPECT_LE(live().lostAudio.size(), 1000U);
}

TEST_F(RunPublicationTests, anotherLoudnessReadingStartsMinAndMaxOver) {
    engine->setMeasuresLoudness(true, UUID::main());
    engine->loudnessReadout.set(LoudnessMetric::momentary);
    start();
    for (int i = 0; i < 5; ++i) {
        audio.feed("", {sine(1000.0, 0.1, 48000, 48000 * i)});
        clock.advance(1.0);
        tick();
    }
    ASSERT_NEAR(live().maxSPLValueDB, -23.0, 0.2);
    engine->loudnessReadout.set(LoudnessMetric::range);
    tick();
    EXPECT_FALSE(std::isfinite(live().maxSPLValueDB) && live().maxSPLValueDB < -20.0);
    EXPECT_GE(live().minSPLValueDB, 0.0);
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
}

TEST_F(RunPublicationTests, anAnalysisUnderWayWhenItsSourceIsLostShowsNothing) {
    const UUID id = add(true, true);
    engine->addDemand(ChannelDemand::rta, id);
    engine->addDemand(ChannelDemand::spectrogram, id);
    start();
    audio.feed("desk", std::vector<std::vector<float>>(8, sine(1500.0, 0.1, 8192)));
    // The loss is in the event loop when the analysis is ordered, and so ahead of its result.
    audio.lose("desk", TarvaneKit::AudioSourceLoss::deviceRemoved);
    timer.fire();
    waitUntil([&] { return engine->errorMessage().has_value(); });
    tick();  // the main input's, behind that analysis
    EXPECT_TRUE(live(id).lineSpectrumDB.empty());
    EXPECT_TRUE(live(id).spectrogramHistory.empty());
    EXPECT_FALSE(std::isfinite(live(id).currentSPLValueDB));
}

TEST_F(RunPublicationTests, aLostSourceLeavesWhatIsOfTheSessionAndNothingLive) {
    const UUID id = add(true, true);
    engine->setMeasuresLoudness(true, id);
    start();
    for (int second = 0; second < 4; ++second) {
        pass(id, sine(1000.0, 1.0, 48000, second * 48000));
    }
    showRing(id);
    ASSERT_EQ(live(id).inputClipState, TarvaneKit::InputClipState::active);
    ASSERT_GT(live(id).leqElapsedFraction, 0.0);
    const auto before = live(id).loudness.value();
    const double max = live(id).maxSPLValueDB;
    audio.lose("desk", TarvaneKit::AudioSourceLoss::deviceRemoved);
    waitUntil([&] { return engine->errorMessage().has_value(); });
    const auto after = live(id).loudness.value();
    EXPECT_TRUE(std::isfinite(after.integrated));
    EXPECT_EQ(after.integrated, before.integrated);
    EXPECT_EQ(after.truePeakMax, before.truePeakMax);
    EXPECT_EQ(after.shortTermMax, before.shortTermMax);
    EXPECT_FALSE(std::isfinite(after.momentary));
    EXPECT_FALSE(std::isfinite(after.shortTerm));
    EXPECT_EQ(live(id).maxSPLValueDB, max);
    EXPECT_EQ(live(id).inputClipState, TarvaneKit::InputClipState::none);
    EXPECT_FALSE(live(id).currentRingAlert);
    EXPECT_FALSE(live(id).heldRingAlert);
    EXPECT_EQ(live(id).leqElapsedFraction, 0.0);
    EXPECT_EQ(live(id).trafficLightColor,
              engine->trafficLightColor(-std::numeric_limits<double>::infinity(), id));
    // The large value can still be asked for what stands.
    EXPECT_FALSE(std::isfinite(live(id).currentSPLValueDB));
    engine->loudnessReadout.set(TarvaneKit::LoudnessMetric::integrated);
    EXPECT_EQ(live(id).currentSPLValueDB, before.integrated);
    start();
    engine->stop();
    start();
    EXPECT_FALSE(live(id).loudness && std::isfinite(live(id).loudness->integrated));
}

TEST_F(RunPublicationTests, aChannelThatFailsToStartShowsNothingOfTheRunBefore) {
    const UUID id = add(true, true);
    engine->addDemand(ChannelDemand::rta, id);
    engine->setMeasuresLoudness(true, id);
    start();
    pass(id, sine(1000.0, 1.0, 48000));
    showRing(id);
    engine->stop();
    ASSERT_TRUE(live(id).loudness);
    ASSERT_FALSE(live(id).bandLevelsDB.empty());
    audio.behaviour("desk").startError = TarvaneKit::AudioIOError::noInputAvailable();
    start();
    EXPECT_FALSE(live(id).loudness);
    EXPECT_TRUE(live(id).bandLevelsDB.empty());
    EXPECT_FALSE(live(id).heldRingAlert);
    EXPECT_FALSE(std::isfinite(live(id).currentSPLValueDB));
    EXPECT_EQ(live(id).inputClipState, TarvaneKit::InputClipState::none);
    EXPECT_EQ(live(id).inputPeakDBFS, LiveMeterData::inputMeterFloorDBFS);
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

}  // namespace RunPublicationTests
}  // namespace TarvaneApp
