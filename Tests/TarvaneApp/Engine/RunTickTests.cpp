#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace RunTickTests {

using TarvaneKit::InputClipState;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;
using TarvaneTests::sine;

// A full-scale sine reads 10 log10(1/2).
constexpr double sineRMSDB = -3.0103;

class RunTickTests : public TarvaneTests::EngineFixture {
  protected:
    /// One block whose largest sample is `peak`.
    void feedPeak(float peak) {
        std::vector<float> block(64, 0.0F);
        block[10] = -peak;
        audio.feed("", {block});
    }
};

TEST_F(RunTickTests, withNoChannelRunningATickDoesNothing) {
    start();
    processorOf().reset();
    int publications = 0;
    QObject::connect(&live(), &LiveMeterData::willChange, [&] { ++publications; });
    timer.fire();
    settle();
    EXPECT_EQ(publications, 0);
    // Nothing is in flight: the next tick of a channel goes through.
    engine->stop();
    start();
    publications = 0;
    tick();
}

TEST_F(RunTickTests, publishesOncePerTickWithOneSignalAheadOfTheWrites) {
    start();
    audio.feed("", {sine(1000.0, 0.1, 48000)});
    int signals = 0;
    double valueAtSignal = 0.0;
    QObject::connect(&live(), &LiveMeterData::willChange, [&] {
        ++signals;
        valueAtSignal = live().currentSPLValueDB;
    });
    timer.fire();
    waitUntil([&] { return signals > 0; });
    settle();
    EXPECT_EQ(signals, 1);
    EXPECT_FALSE(std::isfinite(valueAtSignal));
    EXPECT_NEAR(live().currentSPLValueDB, -20.0 + sineRMSDB, 0.05);
}

TEST_F(RunTickTests, aTickDuringAnAnalysisIsSkipped) {
    start();
    int publications = 0;
    QObject::connect(&live(), &LiveMeterData::willChange, [&] { ++publications; });
    // The results come back through the event loop, which doesn't run in between.
    timer.fire();
    timer.fire();
    timer.fire();
    waitUntil([&] { return publications > 0; });
    settle();
    EXPECT_EQ(publications, 1);
}

TEST_F(RunTickTests, resultsOfAnEndedRunAreDropped) {
    start();
    timer.fire();
    engine->stop();
    int publications = 0;
    QObject::connect(&live(), &LiveMeterData::willChange, [&] { ++publications; });
    settle();
    start();
    const int atStart = publications;
    settle();
    EXPECT_EQ(publications, atStart);
    tick();
}

TEST_F(RunTickTests, resultsThatArriveDuringAPauseAreDroppedAndTheNextRunGoesOn) {
    start();
    timer.fire();
    engine->pause();
    int publications = 0;
    QObject::connect(&live(), &LiveMeterData::willChange, [&] { ++publications; });
    for (int i = 0; i < 50; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    }
    EXPECT_EQ(publications, 0);
    engine->resume();
    tick();
    EXPECT_EQ(publications, 1);
}

TEST_F(RunTickTests, minAndMaxFollowFiniteLevelsAlone) {
    start();
    tick();
    EXPECT_EQ(live().minSPLValueDB, std::numeric_limits<double>::infinity());
    EXPECT_EQ(live().maxSPLValueDB, -std::numeric_limits<double>::infinity());
    engine->splTimeWeighting.set(TimeWeighting::none);
    audio.feed("", {std::vector<float>(48000, 0.0F)});
    tick();
    EXPECT_EQ(live().minSPLValueDB, std::numeric_limits<double>::infinity());
    audio.feed("", {sine(1000.0, 0.1, 48000)});
    tick();
    audio.feed("", {sine(1000.0, 0.5, 48000)});
    tick();
    EXPECT_NEAR(live().minSPLValueDB, -20.0 + sineRMSDB, 0.05);
    EXPECT_NEAR(live().maxSPLValueDB, 20.0 * std::log10(0.5) + sineRMSDB, 0.05);
}

TEST_F(RunTickTests, aLeqBeforeItsFirstBlockLeavesMinAndMax) {
    engine->metricMode.set(MetricMode::leq);
    start();
    tick();
    EXPECT_EQ(live().currentSPLValueDB, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(live().minSPLValueDB, std::numeric_limits<double>::infinity());
}

TEST_F(RunTickTests, leqProgressIsPublished) {
    engine->configureLeq(Weighting::a, 10.0);
    start();
    audio.feed("", {sine(1000.0, 0.1, 48000)});
    tick();
    EXPECT_NEAR(live().leqElapsedFraction, 0.1, 1e-12);
}

TEST_F(RunTickTests, theThresholdOfAClipIsInclusive) {
    start();
    feedPeak(0.9989F);
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::none);
    feedPeak(0.999F);
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::active);
}

TEST_F(RunTickTests, aClipShowsForOneAndAHalfSecondsAndThenStaysLatchedUntilReset) {
    start();
    feedPeak(1.0F);
    tick();
    clock.advance(1.499);
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::active);
    clock.advance(0.001);
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::latched);
    clock.advance(3600.0);
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::latched);
    engine->resetMinMax();
    EXPECT_EQ(live().inputClipState, InputClipState::none);
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::none);
}

TEST_F(RunTickTests, noClipBetweenTicksIsLost) {
    start();
    feedPeak(1.0F);
    for (int i = 0; i < 100; ++i) {
        feedPeak(0.0F);
    }
    tick();
    EXPECT_EQ(live().inputClipState, InputClipState::active);
}

TEST_F(RunTickTests, theInputMeterJumpsUpAndFallsTwentyDBPerSecond) {
    start();
    feedPeak(0.5F);
    tick();
    const double top = 20.0 * std::log10(0.5);
    EXPECT_NEAR(live().inputPeakDBFS, top, 1e-6);
    EXPECT_NEAR(live().inputPeakHoldDBFS, top, 1e-6);
    clock.advance(0.5);
    tick();
    EXPECT_NEAR(live().inputPeakDBFS, top - 10.0, 1e-6);
    EXPECT_NEAR(live().inputPeakHoldDBFS, top, 1e-6);
    clock.advance(1.0);
    tick();
    EXPECT_NEAR(live().inputPeakDBFS, top - 30.0, 1e-6);
    EXPECT_NEAR(live().inputPeakHoldDBFS, top, 1e-6);
    clock.advance(0.25);
    tick();
    EXPECT_NEAR(live().inputPeakHoldDBFS, top - 5.0, 1e-6);
    for (int i = 0; i < 20; ++i) {
        clock.advance(0.5);
        tick();
        EXPECT_GE(live().inputPeakHoldDBFS, live().inputPeakDBFS);
    }
    EXPECT_EQ(live().inputPeakDBFS, -60.0);
    EXPECT_EQ(live().inputPeakHoldDBFS, -60.0);
}

TEST_F(RunTickTests, silenceStandsAtTheFloorOfTheInputMeter) {
    start();
    feedPeak(0.0F);
    tick();
    EXPECT_EQ(live().inputPeakDBFS, -60.0);
    EXPECT_EQ(live().inputPeakHoldDBFS, -60.0);
}

TEST_F(RunTickTests, aStereoChannelPublishesItsSides) {
    engine->selectedDeviceUID.set("desk");
    engine->mainInputIsStereo.set(true);
    engine->splWeighting.set(Weighting::z);
    start();
    std::vector<std::vector<float>> block(8, std::vector<float>(48000, 0.0F));
    block[0] = sine(1000.0, 0.1, 48000);
    block[1] = sine(1000.0, 0.01, 48000);
    for (int i = 0; i < 4; ++i) {
        audio.feed("desk", block);
    }
    tick();
    ASSERT_EQ(live().sideSPLValuesDB.size(), 2U);
    EXPECT_NEAR(live().sideSPLValuesDB[0], -20.0 + sineRMSDB, 0.001);
    EXPECT_NEAR(live().sideSPLValuesDB[1], -40.0 + sineRMSDB, 0.001);
    // The mean of the two energies.
    EXPECT_NEAR(live().currentSPLValueDB, -20.0 + sineRMSDB + 10.0 * std::log10(1.01 / 2.0), 0.001);
}

TEST_F(RunTickTests, theReadingTakesItsTrafficLightColour) {
    start();
    engine->splTimeWeighting.set(TimeWeighting::none);
    const auto colourAt = [&](double amplitude) {
        audio.feed("", {sine(1000.0, amplitude, 48000)});
        tick();
        return live().trafficLightColor;
    };
    colourAt(0.5);  // settles the filters
    EXPECT_EQ(colourAt(1.0), TarvaneKit::SignalColors::yellow);
    EXPECT_EQ(colourAt(1.2), TarvaneKit::SignalColors::red);
    EXPECT_EQ(colourAt(0.1), TarvaneKit::SignalColors::green);
}

TEST_F(RunTickTests, aMetricSwitchReadsASettledValueAtTheNextTick) {
    start();
    engine->peakWeighting.set(Weighting::z);
    for (int i = 0; i < 10; ++i) {
        audio.feed("", {sine(1000.0, 0.1, 48000, 48000 * i)});
    }
    tick();
    engine->updateDisplay(UUID::main(), [](auto& display) {
        display.splTimeWeighting = TimeWeighting::slow;
        display.splWeighting = Weighting::c;
    });
    tick();
    EXPECT_NEAR(live().currentSPLValueDB, -20.0 + sineRMSDB, 0.01);
    engine->updateDisplay(UUID::main(),
                          [](auto& display) { display.metricMode = MetricMode::peak; });
    audio.feed("", {sine(1000.0, 0.1, 48000)});
    tick();
    EXPECT_NEAR(live().currentSPLValueDB, -20.0, 0.01);
}

TEST_F(RunTickTests, channelsAreAnalysedSideBySide) {
    std::vector<UUID> ids;
    for (int i = 0; i < 8; ++i) {
        ids.push_back(addChannel("C", "desk", i).id);
    }
    start();
    std::vector<std::vector<float>> block;
    for (int i = 0; i < 8; ++i) {
        block.push_back(sine(1000.0, std::pow(10.0, -i / 20.0), 4800));
    }
    audio.feed("desk", block);
    tick(ids.back());
    for (int i = 0; i < 8; ++i) {
        EXPECT_NEAR(live(ids[static_cast<std::size_t>(i)]).inputPeakDBFS, -i, 0.01);
    }
}

}  // namespace RunTickTests
}  // namespace TarvaneApp
