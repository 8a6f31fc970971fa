#include <gmock/gmock.h>

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace RunTests {

using TarvaneKit::AudioIOError;
using TarvaneKit::AudioSourceLoss;
using TarvaneKit::MicrophoneAuthorization;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::Weighting;
using TarvaneTests::sine;
using testing::ElementsAre;

class RunTests : public TarvaneTests::EngineFixture {
  protected:
    void TearDown() override {
        engine.reset();
        EXPECT_EQ(audio.runningCount(), 0) << "a source stays open behind the engine";
        EXPECT_EQ(audio.clearedTooEarly(), 0);
    }
};

TEST_F(RunTests, isIdleAtLaunch) {
    EXPECT_FALSE(engine->isRunning());
    EXPECT_FALSE(engine->isStarting());
    EXPECT_EQ(engine->sampleRate(), 48000.0);
    EXPECT_EQ(audio.madeCount(), 0);
}

TEST_F(RunTests, aMainChannelAloneOpensOneSource) {
    audio.behaviour("").sampleRate = 96000.0;
    engine->start();
    EXPECT_TRUE(engine->isStarting());
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_FALSE(engine->isStarting());
    EXPECT_EQ(audio.runningCount(), 1);
    EXPECT_EQ(engine->sampleRate(), 96000.0);
    EXPECT_TRUE(timer.isRunning());
}

TEST_F(RunTests, startingTwiceOpensNothingMore) {
    engine->start();
    engine->start();
    waitUntil([&] { return engine->isRunning(); });
    engine->start();
    settle();
    EXPECT_EQ(audio.madeCount(), 1);
}

TEST_F(RunTests, threeChannelsOnTwoDevicesOpenTwoSources) {
    engine->selectedDeviceUID.set("desk");
    addChannel("B", "desk", 3);
    addChannel("C", "mic", 0);
    start();
    EXPECT_THAT(audio.madeUIDs(), ElementsAre("desk", "mic"));
}

TEST_F(RunTests, theDefaultDeviceByItsUIDIsAnotherSource) {
    addChannel("B", "mic", 0);
    addChannel("C", "", 0);
    start();
    EXPECT_THAT(audio.madeUIDs(), ElementsAre("", "mic"));
}

TEST_F(RunTests, plansKeepTheOrderInWhichDevicesFirstOccur) {
    const auto b = addChannel("B", "desk", 0);
    const auto c = addChannel("C", "", 0);
    const auto d = addChannel("D", "desk", 1);
    const auto plans = makeStartPlans(engine->activeChannelInfos(), engine->availableDevices());
    ASSERT_EQ(plans.size(), 2U);
    EXPECT_EQ(plans[0].uid, std::nullopt);
    EXPECT_TRUE(plans[0].holdsMainInput());
    EXPECT_EQ(plans[0].channelNames(), "Main Input, C");
    EXPECT_EQ(plans[1].uid, "desk");
    EXPECT_EQ(plans[1].device->id, 41U);
    EXPECT_EQ(plans[1].channelNames(), "B, D");
}

TEST_F(RunTests, disabledChannelsDontRun) {
    auto config = addChannel("B", "desk", 0);
    auto channels = engine->extraChannels();
    channels[0].isEnabled = false;
    engine->extraChannels.set(channels);
    start();
    EXPECT_EQ(audio.madeCount(), 1);
}

TEST_F(RunTests, onlySystemOutputAsksForNoPermission) {
    audio.setAuthorization(MicrophoneAuthorization::denied);
    engine->selectedDeviceUID.set(TarvaneKit::systemOutputUID);
    start();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(audio.permissionRequests(), 0);
    EXPECT_THAT(audio.madeUIDs(), ElementsAre(TarvaneKit::systemOutputUID));
}

TEST_F(RunTests, aRefusedMicrophoneOpensNothing) {
    for (const auto status :
         {MicrophoneAuthorization::denied, MicrophoneAuthorization::restricted}) {
        audio.setAuthorization(status);
        makeEngine();
        engine->start();
        EXPECT_FALSE(engine->isStarting());
        EXPECT_TRUE(engine->microphonePermissionDenied());
        EXPECT_EQ(engine->errorMessage(), AudioIOError::microphoneAccessDenied().what());
    }
    EXPECT_EQ(audio.madeCount(), 0);
}

TEST_F(RunTests, anUndecidedMicrophoneIsAskedFor) {
    audio.setAuthorization(MicrophoneAuthorization::undetermined);
    engine->start();
    EXPECT_EQ(audio.permissionRequests(), 1);
    EXPECT_FALSE(engine->isStarting());
    audio.answerPermission(false);
    settle();
    EXPECT_TRUE(engine->microphonePermissionDenied());
    engine->start();
    audio.answerPermission(true);
    waitUntil([&] { return engine->isRunning(); });
}

TEST_F(RunTests, stopDuringASlowStartIsImmediateAndShutsWhatOpensLater) {
    audio.behaviour("").opensSlowly = true;
    audio.behaviour("").opensInSpiteOfStop = true;
    engine->start();
    EXPECT_TRUE(engine->isStarting());
    waitUntil([&] { return audio.madeCount() == 1; });
    engine->stop();
    EXPECT_FALSE(engine->isStarting());
    audio.open("");
    // A second start goes through the same queue, so the first one's result is in before it.
    start();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(audio.runningCount(), 1);
    EXPECT_EQ(audio.madeCount(), 2);
}

TEST_F(RunTests, startStopStartLeavesTheSecondStanding) {
    audio.behaviour("").opensSlowly = true;
    audio.behaviour("").opensInSpiteOfStop = true;
    engine->start();
    waitUntil([&] { return audio.madeCount() == 1; });
    engine->stop();
    engine->selectedDeviceUID.set("desk");
    engine->start();
    EXPECT_TRUE(engine->isStarting());
    audio.open("");
    waitUntil([&] { return engine->isRunning(); });
    settle();
    EXPECT_EQ(audio.madeUIDs(), (std::vector<std::string>{"", "desk"}));
    EXPECT_EQ(audio.runningCount(), 1);
    EXPECT_TRUE(audio.feed("desk", std::vector<std::vector<float>>(8, sine(1000.0, 0.1, 64))));
    EXPECT_FALSE(audio.feed("", {sine(1000.0, 0.1, 64)}));
}

// Else every further start would wait for the server behind the ones that nobody wants any more.
TEST_F(RunTests, aStartThatWasCalledOffBeforeItBeganNeverOpens) {
    audio.behaviour("").opensSlowly = true;
    audio.behaviour("").opensInSpiteOfStop = true;
    engine->start();
    waitUntil([&] { return audio.madeCount() == 1; });
    engine->stop();
    engine->selectedDeviceUID.set("desk");
    for (int i = 0; i < 3; ++i) {
        engine->start();
        engine->stop();
    }
    engine->selectedDeviceUID.set("mic");
    engine->start();
    audio.open("");
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_EQ(audio.madeUIDs(), (std::vector<std::string>{"", "mic"}));
    EXPECT_EQ(audio.runningCount(), 1);
    EXPECT_FALSE(engine->errorMessage());
}

// Nobody opens what is opening: the end of the engine alone ends it.
TEST_F(RunTests, quittingInsideAStartEndsIt) {
    audio.behaviour("").opensSlowly = true;
    engine->start();
    waitUntil([&] { return audio.madeCount() == 1; });
    engine.reset();
    EXPECT_EQ(audio.runningCount(), 0);
}

TEST_F(RunTests, whatIsChangedDuringAStartIsNotLost) {
    audio.behaviour("").opensSlowly = true;
    engine->start();
    engine->configureLeq(TarvaneKit::Weighting::c, 2.0);
    audio.open("");
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    audio.feed("", {sine(1000.0, 0.1, 48000)});
    tick();
    EXPECT_NEAR(live().leqElapsedFraction, 0.5, 0.01);

    engine->stop();
    audio.behaviour("").opensSlowly = true;
    engine->start();
    addChannel("B", "desk", 0);
    audio.open("");
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());

    engine->stop();
    audio.behaviour("").opensSlowly = true;
    engine->start();
    engine->selectedDeviceUID.set("desk");
    audio.open("");
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(RunTests, aLostDeviceThatIsBackOffersARestart) {
    const auto b = addChannel("B", "desk", 0);
    start();
    audio.unplug("desk");
    audio.lose("desk", AudioSourceLoss::deviceRemoved);
    waitUntil([&] { return engine->availableDevices().size() == 1 && engine->errorMessage(); });
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    audio.plugIn({.id = 61, .uid = "desk", .name = "Desk", .channelCount = 8});
    waitUntil([&] { return engine->availableDevices().size() == 2; });
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
    engine->stop();
    start();
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    EXPECT_TRUE(engine->meterChannel(b.id).hasProcessor());
}

TEST_F(RunTests, aRunStaysOnItsDeviceAndOffersTheNewDefault) {
    start();
    EXPECT_EQ(engine->meteredDevice(), "Measurement Mic (default)");
    audio.setDefaultInput(41);
    engine->refreshDevices();
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
    EXPECT_EQ(engine->meteredDevice(), "Measurement Mic (default)");
    engine->stop();
    EXPECT_FALSE(engine->meteredDevice());
    start();
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    EXPECT_EQ(engine->meteredDevice(), "Desk (default)");
}

TEST_F(RunTests, theMeteredDeviceIsNamedAsItIs) {
    engine->selectedDeviceUID.set("desk");
    start();
    EXPECT_EQ(engine->meteredDevice(), "Desk");
    engine->stop();
    engine->selectedDeviceUID.set("gone");
    start();
    EXPECT_EQ(engine->meteredDevice(),
              "Measurement Mic (default; the chosen device isn't connected)");
    engine->stop();
    engine->selectedDeviceUID.set(std::string(TarvaneKit::systemOutputUID));
    start();
    EXPECT_EQ(engine->meteredDevice(), "System Output (the default output)");
    // The chosen device comes: a restart would open it.
    engine->stop();
    engine->selectedDeviceUID.set("gone");
    start();
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    audio.plugIn({.id = 62, .uid = "gone", .name = "Gone", .channelCount = 1});
    waitUntil([&] { return engine->availableDevices().size() == 3; });
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(RunTests, anErrorThatIsUnreadIsFollowedAndNotReplaced) {
    addChannel("B", "desk", 0);
    start();
    audio.lose("desk", AudioSourceLoss::stalled);
    waitUntil([&] { return engine->errorMessage().has_value(); });
    audio.lose("", AudioSourceLoss::deviceRemoved);
    waitUntil([&] { return !engine->isRunning(); });
    EXPECT_EQ(engine->errorMessage(), "Desk: The device delivers no audio.");
    engine->dismissError();
    EXPECT_EQ(engine->errorMessage(), "Measurement Mic: The device was disconnected.");
    engine->dismissError();
    EXPECT_FALSE(engine->errorMessage());
}

TEST_F(RunTests, anErrorThatIsUnreadIsNotToldTwice) {
    audio.setListingError(AudioIOError::deviceEnumerationFailed(-5));
    engine->refreshDevices();
    engine->refreshDevices();
    engine->dismissError();
    EXPECT_FALSE(engine->errorMessage());
}

TEST_F(RunTests, anAnswerAboutTheMicrophoneMayComeTooLate) {
    audio.setAuthorization(MicrophoneAuthorization::undetermined);
    engine->start();
    engine->stop();
    audio.answerPermission(true);
    settle();
    EXPECT_FALSE(engine->isRunning());
    EXPECT_FALSE(engine->isStarting());
    engine->start();
    engine.reset();
    audio.answerPermission(true);
    EXPECT_EQ(audio.runningCount(), 0);
}

TEST_F(RunTests, aFailingMainInputClosesEverything) {
    addChannel("B", "desk", 0);
    audio.behaviour("").startError = AudioIOError::noInputAvailable();
    audio.setAuthorization(MicrophoneAuthorization::denied);
    engine->start();
    ASSERT_TRUE(engine->microphonePermissionDenied());
    engine->dismissError();
    audio.setAuthorization(MicrophoneAuthorization::authorized);
    start();
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(engine->errorMessage(), "No audio input device is available.");
    EXPECT_FALSE(engine->microphonePermissionDenied());
    EXPECT_EQ(audio.runningCount(), 0);
    EXPECT_FALSE(timer.isRunning());
}

TEST_F(RunTests, aFailedStartCanBeRepeated) {
    audio.behaviour("").startError = AudioIOError::noInputAvailable();
    start();
    audio.behaviour("").startError.reset();
    start();
    EXPECT_TRUE(engine->isRunning());
}

TEST_F(RunTests, aFailingExtraChannelLeavesTheRestRunning) {
    const auto b = addChannel("B", "desk", 0);
    addChannel("C", "desk", 1);
    audio.behaviour("desk").startError = AudioIOError::engineStartFailed("busy");
    start();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(engine->errorMessage(),
              "Some channels couldn't start:\nB, C: Failed to start the audio engine: busy");
    EXPECT_FALSE(processorOf(b.id));
}

TEST_F(RunTests, aMissingDeviceIsALineForAnExtraChannelAndTheDefaultForTheMainInput) {
    engine->selectedDeviceUID.set("gone");
    addChannel("B", "gone too", 0);
    start();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_THAT(audio.madeUIDs(), ElementsAre(""));
    EXPECT_EQ(engine->errorMessage(),
              "Some channels couldn't start:\nB: The selected device isn't connected.");
}

TEST_F(RunTests, aMissingMainDeviceAloneStartsWithoutAMessage) {
    engine->selectedDeviceUID.set("gone");
    start();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_FALSE(engine->errorMessage());
}

TEST_F(RunTests, aGoodStartLeavesAnEarlierMessage) {
    TarvaneTests::EngineInsides::tell(*engine, "earlier");
    start();
    EXPECT_EQ(engine->errorMessage(), "earlier");
}

TEST_F(RunTests, stopClosesTheSourcesAndKeepsTheReadings) {
    start();
    audio.feed("", {sine(1000.0, 0.5, 4800)});
    tick();
    const double reading = live().currentSPLValueDB;
    EXPECT_TRUE(std::isfinite(reading));
    engine->stop();
    EXPECT_EQ(audio.runningCount(), 0);
    EXPECT_FALSE(timer.isRunning());
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(live().currentSPLValueDB, reading);
    ASSERT_TRUE(processorOf());
    EXPECT_EQ(processorOf()->value(SPLMetric::spl(Weighting::a, TimeWeighting::fast)), reading);
}

TEST_F(RunTests, aNewStartReplacesTheProcessors) {
    start();
    const auto before = processorOf();
    engine->stop();
    start();
    EXPECT_NE(processorOf(), before);
    EXPECT_EQ(live().minSPLValueDB, std::numeric_limits<double>::infinity());
    EXPECT_EQ(live().maxSPLValueDB, -std::numeric_limits<double>::infinity());
}

TEST_F(RunTests, pauseDropsAudioAndKeepsTheSourceOpen) {
    start();
    audio.feed("", {sine(1000.0, 0.5, 4800)});
    const auto processor = processorOf();
    const auto metric = SPLMetric::spl(Weighting::z, TimeWeighting::slow);
    const double before = processor->value(metric);
    engine->pause();
    EXPECT_TRUE(engine->isPaused());
    EXPECT_TRUE(engine->isRunning());
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(audio.runningCount(), 1);
    EXPECT_TRUE(audio.feed("", {sine(1000.0, 1.0, 4800)}));
    EXPECT_EQ(processor->value(metric), before);

    engine->resume();
    EXPECT_FALSE(engine->isPaused());
    EXPECT_TRUE(timer.isRunning());
    EXPECT_EQ(processor->accumulatedCount(), 0);
    audio.feed("", {sine(1000.0, 1.0, 4800)});
    EXPECT_GT(processor->value(metric), before);
}

TEST_F(RunTests, pauseTwiceIsHarmlessAndResumeNeedsAPause) {
    engine->pause();
    EXPECT_FALSE(engine->isPaused());
    engine->resume();
    EXPECT_FALSE(timer.isRunning());
    start();
    engine->resume();
    EXPECT_TRUE(engine->isRunning());
    engine->pause();
    engine->pause();
    EXPECT_TRUE(engine->isPaused());
}

TEST_F(RunTests, stopEndsAPause) {
    start();
    engine->pause();
    engine->stop();
    EXPECT_FALSE(engine->isPaused());
    EXPECT_FALSE(engine->isRunning());
}

TEST_F(RunTests, anInputBeyondTheDevicesReadsItsLastChannel) {
    engine->selectedDeviceUID.set("desk");
    const auto b = addChannel("B", "desk", 11);
    start();
    audio.feed("desk", {sine(1000.0, 0.1, 4800), sine(1000.0, 0.5, 4800)});
    const auto metric = SPLMetric::spl(Weighting::z, TimeWeighting::none);
    // A sine of amplitude a has the mean square a²/2.
    EXPECT_NEAR(processorOf(b.id)->value(metric), 20.0 * std::log10(0.5) - 3.0103, 0.001);
    EXPECT_NEAR(processorOf()->value(metric), -20.0 - 3.0103, 0.001);
}

TEST_F(RunTests, nothingIsExclusiveBetweenChannels) {
    const auto b = addChannel("B", "desk", 2, 3);
    const auto c = addChannel("C", "desk", 2, 5);
    start();
    std::vector<std::vector<float>> block(8, std::vector<float>(4800, 0.0F));
    block[2] = sine(1000.0, 0.5, 4800);
    audio.feed("desk", block);
    const auto metric = SPLMetric::spl(Weighting::z, TimeWeighting::none);
    EXPECT_EQ(processorOf(b.id)->sideValues(metric), processorOf(c.id)->sideValues(metric));
}

TEST_F(RunTests, aBlockWithoutChannelsIsPassedOver) {
    start();
    EXPECT_TRUE(audio.feed("", {}));
    EXPECT_EQ(processorOf()->accumulatedCount(), 0);
}

TEST_F(RunTests, changesOfDeviceOrInputWhileRunningOfferARestart) {
    start();
    engine->selectedChannelIndex.set(0);
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    engine->selectedDeviceUID.set("desk");
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
    engine->stop();
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    start();
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    engine->selectedChannelIndex.set(2);
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(RunTests, renamingOrRecolouringAChannelAsksForNoRestart) {
    addChannel("B", "desk", 0);
    start();
    auto channels = engine->extraChannels();
    channels[0].name = "Stage";
    channels[0].color = {1.0, 0.0, 0.0, 1.0};
    channels[0].display = ChannelDisplaySettings{};
    engine->extraChannels.set(channels);
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    channels[0].channelIndex = 4;
    engine->extraChannels.set(channels);
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(RunTests, disablingAChannelWhileRunningAsksForARestartAndKeepsItInTheRun) {
    const auto b = addChannel("B", "desk", 0);
    start();
    auto channels = engine->extraChannels();
    channels[0].isEnabled = false;
    engine->extraChannels.set(channels);
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
    EXPECT_TRUE(processorOf(b.id));
    EXPECT_EQ(audio.runningCount(), 2);
}

TEST_F(RunTests, losingTheMainInputStopsTheRunWithOneMessage) {
    engine->selectedDeviceUID.set("desk");
    addChannel("B", "mic", 0);
    start();
    int messages = 0;
    QObject::connect(&engine->errorMessage.notifier(), &ChangeNotifier::changed, engine.get(),
                     [&] { ++messages; });
    audio.lose("desk", AudioSourceLoss::deviceRemoved);
    waitUntil([&] { return !engine->isRunning(); });
    settle();
    EXPECT_EQ(engine->errorMessage(), "Desk: The device was disconnected.");
    EXPECT_EQ(messages, 1);
    EXPECT_EQ(audio.runningCount(), 0);
    EXPECT_FALSE(timer.isRunning());
    start();
    EXPECT_TRUE(engine->isRunning());
}

TEST_F(RunTests, aLostDeviceIsNamedThoughTheListHasItNoMore) {
    engine->selectedDeviceUID.set("desk");
    start();
    audio.unplug("desk");
    engine->refreshDevices();
    audio.lose("desk", AudioSourceLoss::deviceRemoved);
    waitUntil([&] { return !engine->isRunning(); });
    EXPECT_EQ(engine->errorMessage(), "Desk: The device was disconnected.");
}

TEST_F(RunTests, losingAnExtraDeviceSilencesItsChannelsAlone) {
    const auto b = addChannel("B", "desk", 0);
    start();
    audio.feed("desk", std::vector<std::vector<float>>(8, sine(1000.0, 0.5, 4800)));
    audio.feed("", {sine(1000.0, 0.5, 4800)});
    tick(b.id);
    EXPECT_TRUE(std::isfinite(live(b.id).currentSPLValueDB));
    audio.lose("desk", AudioSourceLoss::stalled);
    waitUntil([&] { return engine->errorMessage().has_value(); });
    EXPECT_EQ(engine->errorMessage(), "Desk: The device delivers no audio.");
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(audio.runningCount(), 1);
    EXPECT_FALSE(std::isfinite(live(b.id).currentSPLValueDB));
    tick();
    EXPECT_TRUE(std::isfinite(live().currentSPLValueDB));
}

TEST_F(RunTests, theServersEndStopsAllSourcesWithOneMessage) {
    engine->selectedDeviceUID.set("mic");
    addChannel("B", "desk", 0);
    start();
    int messages = 0;
    QObject::connect(&engine->errorMessage.notifier(), &ChangeNotifier::changed, engine.get(),
                     [&] { ++messages; });
    audio.lose("desk", AudioSourceLoss::serverLost);
    audio.lose("mic", AudioSourceLoss::serverLost);
    waitUntil([&] { return !engine->isRunning(); });
    settle();
    EXPECT_EQ(engine->errorMessage(), "The audio server stopped.");
    EXPECT_EQ(messages, 1);
    EXPECT_EQ(audio.runningCount(), 0);
}

TEST_F(RunTests, aSourceThatDiesWhileTheStartIsComingBackEndsTheRun) {
    audio.behaviour("").diesAtOnce = AudioSourceLoss::deviceRemoved;
    start();
    waitUntil([&] { return engine->errorMessage().has_value(); });
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(engine->errorMessage(), "Measurement Mic: The device was disconnected.");
    EXPECT_EQ(audio.runningCount(), 0);
}

TEST_F(RunTests, aLossOfAnOldRunMeansNothing) {
    start();
    audio.lose("", AudioSourceLoss::deviceRemoved);
    engine->stop();
    start();
    settle();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_FALSE(engine->errorMessage());
}

TEST_F(RunTests, quittingDuringASlowStartLeavesNothingOpen) {
    audio.behaviour("").opensSlowly = true;
    engine->start();
    waitUntil([&] { return audio.madeCount() == 1; });
    audio.open("");
    engine.reset();
    EXPECT_EQ(audio.runningCount(), 0);
}

TEST_F(RunTests, devicesThatComeAndGoAreListed) {
    audio.plugIn({.id = 50, .uid = "usb", .name = "USB", .channelCount = 2});
    waitUntil([&] { return engine->availableDevices().size() == 3; });
    audio.unplug("usb");
    waitUntil([&] { return engine->availableDevices().size() == 2; });
}

TEST_F(RunTests, aFailedListingSaysSoAndKeepsTheLastList) {
    audio.setListingError(AudioIOError::deviceEnumerationFailed(-112));
    engine->refreshDevices();
    EXPECT_EQ(engine->errorMessage(), "Failed to enumerate audio devices (error -112).");
    EXPECT_EQ(engine->availableDevices().size(), 2U);
}

TEST_F(RunTests, aListingThatFailsUnaskedKeepsTheListAndSaysNothing) {
    audio.setListingError(AudioIOError::deviceEnumerationFailed(-32));
    audio.unplug("desk");
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    }
    EXPECT_FALSE(engine->errorMessage());
    EXPECT_EQ(engine->availableDevices().size(), 2U);
    audio.setListingError(std::nullopt);
    audio.unplug("desk");
    waitUntil([&] { return engine->availableDevices().size() == 1; });
}

TEST_F(RunTests, aDeviceThatVanishesFromTheListKeepsRunning) {
    engine->selectedDeviceUID.set("desk");
    start();
    audio.unplug("desk");
    waitUntil([&] { return engine->availableDevices().size() == 1; });
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(audio.runningCount(), 1);
}

}  // namespace RunTests
}  // namespace TarvaneApp
