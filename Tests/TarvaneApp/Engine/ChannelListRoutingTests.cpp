#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelListRoutingTests {

using TarvaneKit::RGBAColor;
using TarvaneKit::systemOutputUID;
using TarvaneKit::UUID;

class ChannelListRoutingTests : public TarvaneTests::EngineFixture {
  protected:
    const ChannelConfig& extra(std::size_t i) const { return engine->extraChannels().at(i); }
};

TEST_F(ChannelListRoutingTests, newChannelsAreNumberedFromTwoAndColouredInTurn) {
    for (int i = 0; i < 7; ++i) {
        engine->addChannel();
    }
    EXPECT_EQ(extra(0).name, "Channel 2");
    EXPECT_EQ(extra(6).name, "Channel 8");
    EXPECT_EQ(extra(0).color, (RGBAColor{0.3, 0.7, 1.0, 1.0}));
    EXPECT_EQ(extra(5).color, (RGBAColor{1.0, 0.55, 0.3, 1.0}));
    EXPECT_EQ(extra(6).color, extra(0).color);
    EXPECT_NE(extra(0).id, extra(6).id);
}

TEST_F(ChannelListRoutingTests, aNewChannelTakesTheLowestFreeInputOfTheMainInputsDevice) {
    engine->selectedDeviceUID.set("desk");
    engine->addChannel();
    EXPECT_EQ(extra(0).deviceUID, "desk");
    EXPECT_EQ(extra(0).channelIndex, 1);
    EXPECT_EQ(extra(0).rightChannelIndex, 2);
    engine->updateChannel(extra(0).id, [](auto& channel) {
        channel.isStereo = true;
        channel.rightChannelIndex = 3;
    });
    engine->addChannel();
    EXPECT_EQ(extra(1).channelIndex, 2);
    engine->addChannel();
    EXPECT_EQ(extra(2).channelIndex, 4);
}

TEST_F(ChannelListRoutingTests, aDisabledOrForeignChannelLeavesItsInputFree) {
    engine->selectedDeviceUID.set("desk");
    engine->addChannel();
    engine->updateChannel(extra(0).id, [](auto& channel) { channel.isEnabled = false; });
    addChannel("B", "mic", 2);
    engine->addChannel();
    EXPECT_EQ(extra(2).channelIndex, 1);
}

TEST_F(ChannelListRoutingTests, withoutAFreeInputANewChannelTakesTheFirst) {
    audio.plugIn({.id = 42, .uid = "pair", .name = "Pair", .channelCount = 2});
    waitUntil([&] { return engine->availableDevices().size() == 3; });
    engine->selectedDeviceUID.set("pair");
    addChannel("B", "pair", 0, 1);
    engine->addChannel();
    EXPECT_EQ(extra(1).channelIndex, 0);
    EXPECT_EQ(extra(1).rightChannelIndex, 1);
}

TEST_F(ChannelListRoutingTests, onAOneInputDeviceTheRightInputIsTheOnlyOne) {
    engine->selectedDeviceUID.set("mic");
    engine->addChannel();
    EXPECT_EQ(extra(0).channelIndex, 0);
    EXPECT_EQ(extra(0).rightChannelIndex, 0);
}

TEST_F(ChannelListRoutingTests, aNewChannelShowsWhatTheMainInputShowsAndKeepsIt) {
    engine->octaveFraction.set(TarvaneKit::OctaveFraction::sixthOctave);
    engine->addChannel();
    ASSERT_TRUE(extra(0).display);
    EXPECT_EQ(*extra(0).display, engine->display(UUID::main()));
    engine->octaveFraction.set(TarvaneKit::OctaveFraction::oneOctave);
    EXPECT_EQ(engine->display(extra(0).id).octaveFraction, TarvaneKit::OctaveFraction::sixthOctave);
}

TEST_F(ChannelListRoutingTests, aNewChannelOnADigitalDeviceStartsDigitalAndWithoutAlerts) {
    engine->addChannel();
    EXPECT_FALSE(extra(0).isDigital);
    EXPECT_TRUE(extra(0).ringOutEnabled);
    audio.setVirtual(41);
    engine->selectedDeviceUID.set("desk");
    engine->addChannel();
    EXPECT_TRUE(extra(1).isDigital);
    EXPECT_FALSE(extra(1).ringOutEnabled);
    EXPECT_FALSE(extra(1).calibration);
    EXPECT_FALSE(extra(1).measuresLoudness);
    EXPECT_TRUE(extra(1).isEnabled);
}

TEST_F(ChannelListRoutingTests, aRemovedChannelTakesItsWindowsLayoutWithIt) {
    engine->addChannel();
    engine->addChannel();
    const UUID removed = extra(0).id;
    const UUID kept = extra(1).id;
    engine->splMeterChannelID.set(removed);
    engine->channelWindowLayouts.set({{removed, {}}, {kept, {}}});
    engine->removeChannel(removed);
    ASSERT_EQ(engine->extraChannels().size(), 1U);
    EXPECT_EQ(extra(0).id, kept);
    EXPECT_EQ(engine->channelWindowLayouts().size(), 1U);
    EXPECT_EQ(engine->resolvedChannelID(engine->splMeterChannelID()), UUID::main());
    makeEngine();
    EXPECT_EQ(engine->channelWindowLayouts().size(), 1U);
    EXPECT_EQ(engine->extraChannels().size(), 1U);
}

TEST_F(ChannelListRoutingTests, aChannelRemovedWhileRunningRunsOnUnseenUntilTheRunEnds) {
    engine->addChannel();
    const UUID id = extra(0).id;
    start();
    engine->removeChannel(id);
    EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
    EXPECT_NE(processorOf(id), nullptr);
    EXPECT_TRUE(audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 480)}));
    tick();
    engine->stop();
    start();
    EXPECT_EQ(processorOf(id), nullptr);
}

TEST_F(ChannelListRoutingTests, movingAChannelKeepsItsInputsWhereTheDeviceHasThem) {
    const UUID id = addChannel("B", "mic", 0).id;
    engine->updateChannel(id, [](auto& channel) {
        channel.channelIndex = 5;
        channel.rightChannelIndex = 6;
        channel.isStereo = true;
    });
    engine->setChannelDevice(id, "desk");
    EXPECT_EQ(extra(0).deviceUID, "desk");
    EXPECT_EQ(extra(0).channelIndex, 5);
    EXPECT_EQ(extra(0).rightChannelIndex, 6);
    EXPECT_TRUE(extra(0).isStereo);
    EXPECT_FALSE(extra(0).isDigital);
    engine->setChannelDevice(id, "mic");
    EXPECT_EQ(extra(0).channelIndex, 0);
    EXPECT_EQ(extra(0).rightChannelIndex, 0);
    EXPECT_FALSE(extra(0).isStereo);
    engine->setChannelDevice(UUID::random(), "desk");
    EXPECT_EQ(extra(0).deviceUID, "mic");
}

TEST_F(ChannelListRoutingTests, movingAChannelToTheSystemOutputMakesItADigitalPair) {
    const UUID id = addChannel("B", "desk", 5).id;
    engine->setChannelDevice(id, systemOutputUID);
    EXPECT_TRUE(extra(0).isDigital);
    EXPECT_TRUE(extra(0).isStereo);
    EXPECT_EQ(extra(0).channelIndex, 0);
    EXPECT_EQ(extra(0).rightChannelIndex, 1);
}

TEST_F(ChannelListRoutingTests, aColourIsTheMainInputsTraceOrTheChannelsOwn) {
    const UUID id = addChannel("B", "desk", 0).id;
    const RGBAColor color{0.1, 0.2, 0.3, 1.0};
    start();
    engine->setChannelColor(color, id);
    EXPECT_EQ(engine->channelInfo(id)->color, color);
    EXPECT_NE(engine->rtaColor(), color);
    engine->setChannelColor(color, UUID::main());
    EXPECT_EQ(engine->mainChannelInfo().color, color);
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(ChannelListRoutingTests, pairingMovingAndEnablingAskForARestartWhileRunning) {
    const UUID id = addChannel("B", "desk", 0).id;
    using Edit = std::function<void(ChannelConfig&)>;
    const std::vector<Edit> edits{[](auto& channel) { channel.isStereo = true; },
                                  [](auto& channel) { channel.rightChannelIndex = 4; },
                                  [](auto& channel) { channel.channelIndex = 3; },
                                  [](auto& channel) { channel.deviceUID.reset(); },
                                  [](auto& channel) { channel.isEnabled = false; },
                                  [](auto& channel) { channel.isEnabled = true; }};
    for (const Edit& edit : edits) {
        start();
        engine->updateChannel(id, edit);
        EXPECT_TRUE(engine->channelSourcesChangedWhileRunning());
        engine->stop();
        EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    }
}

TEST_F(ChannelListRoutingTests, whatIsNotFixedAtTheStartAsksForNoRestart) {
    const UUID id = addChannel("B", "desk", 0).id;
    start();
    engine->updateChannel(id, [](auto& channel) {
        channel.name = "Stage";
        channel.isDigital = false;
        channel.ringOutEnabled = true;
        channel.measuresLoudness = true;
        channel.rightChannelIndex = 7;  // of a mono channel
        channel.display = ChannelDisplaySettings{.showsDBFS = true};
    });
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(ChannelListRoutingTests, choosingTheSameDeviceAgainChangesNothing) {
    engine->selectedDeviceUID.set("desk");
    engine->mainInputIsStereo.set(true);
    engine->mainInputIsDigital.set(true);
    start();
    engine->selectedDeviceUID.set("desk");
    EXPECT_TRUE(engine->mainInputIsDigital());
    EXPECT_TRUE(engine->mainInputIsStereo());
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
}

}  // namespace ChannelListRoutingTests
}  // namespace TarvaneApp
