#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace InputGainsTests {

using TarvaneKit::InputGainState;
using TarvaneKit::UUID;
using TarvaneTests::FakeControls;
using Channels = std::vector<std::vector<int>>;

constexpr std::uint32_t mic = 40;
constexpr std::uint32_t desk = 41;

class InputGainsTests : public TarvaneTests::EngineFixture {
  protected:
    static FakeControls eachAt(double gainDB, int inputs = 8) {
        FakeControls controls;
        for (int i = 0; i < inputs; ++i) {
            controls.gainsDB[i] = gainDB;
        }
        return controls;
    }
    static FakeControls sharedAt(double gainDB) {
        FakeControls controls;
        controls.masterGainDB = gainDB;
        return controls;
    }
    void moveTo(std::uint32_t device, const FakeControls& controls) {
        audio.setControls(device, controls);
        settleGains();
    }
    /// The listeners' way to the main thread.
    void settleGains() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
        }
    }
    static TarvaneKit::CalibrationProfile calibratedAt(std::optional<double> gainDB) {
        TarvaneKit::CalibrationProfile profile;
        profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 100.0,
                                                             .referenceDeviceUID = {},
                                                             .referenceDeviceName = {},
                                                             .calibratedAt = {},
                                                             .inputGainDB = gainDB};
        return profile;
    }
    double reading(const UUID& id) { return processorOf(id)->value(engine->displayedMetric(id)); }
    void playTone(const std::string& uid, double amplitude) {
        ASSERT_TRUE(audio.feed(
            uid, std::vector<std::vector<float>>(8, TarvaneTests::sine(1000.0, amplitude, 96000))));
    }
    double mainGainDB() const { return engine->currentInputGain().value().currentDB; }
};

TEST_F(InputGainsTests, aDeviceWithoutControlsHasNoGain) {
    EXPECT_FALSE(engine->currentInputGain());
    EXPECT_FALSE(engine->currentInputVolumeScalar());
    engine->setInputGain(-6.0);
    EXPECT_EQ(engine->errorMessage(),
              "Couldn't set input gain — this device may not support it in software.");
    engine->dismissError();
    engine->setInputVolume(0.5F);
    EXPECT_EQ(engine->errorMessage(),
              "Couldn't set input volume — this device may not support it in software.");
    EXPECT_FALSE(engine->calibration().inputGain);
}

TEST_F(InputGainsTests, theMainInputsGainIsFollowed) {
    moveTo(mic, eachAt(-10.0, 1));
    engine->refreshDevices();
    EXPECT_EQ(engine->currentInputGain(), InputGainState::create(-10.0, 0.0, -60.0, false));
    // 10^(-10 / 20)
    EXPECT_NEAR(engine->currentInputVolumeScalar().value(), 0.31623, 1e-5);
    moveTo(mic, eachAt(-20.0, 1));
    EXPECT_EQ(mainGainDB(), -20.0);
    EXPECT_EQ(engine->calibration().inputGain, engine->currentInputGain());
}

TEST_F(InputGainsTests, aGainTurnedAtTheDeviceLeavesTheReadingWhereItIs) {
    engine->selectedDeviceUID.set("desk");
    moveTo(desk, eachAt(0.0));
    engine->calibration.set(calibratedAt(0.0));
    start();
    playTone("desk", 0.1);
    const double before = reading(UUID::main());
    // The level of a sine of amplitude 0.1 is -23.01 dBFS.
    EXPECT_NEAR(before, 100.0 - 23.01, 0.01);
    moveTo(desk, eachAt(-12.0));
    EXPECT_NEAR(engine->calibration().broadbandOffsetDB(), 112.0, 1e-9);
    playTone("desk", 0.1 * std::pow(10.0, -12.0 / 20.0));
    playTone("desk", 0.1 * std::pow(10.0, -12.0 / 20.0));
    EXPECT_NEAR(reading(UUID::main()), before, 0.01);
}

TEST_F(InputGainsTests, anExtraChannelsGainIsFollowedWhileItRuns) {
    auto channel = addChannel("B", "desk", 3);
    channel.isDigital = false;
    channel.calibration = calibratedAt(-6.0);
    moveTo(desk, eachAt(-6.0));
    engine->extraChannels.set({channel});
    start();
    playTone("desk", 0.1);
    const double before = reading(channel.id);
    moveTo(desk, eachAt(-26.0));
    EXPECT_EQ(engine->channelInfo(channel.id)->calibration.inputGain->currentDB, -26.0);
    playTone("desk", 0.01);
    playTone("desk", 0.01);
    EXPECT_NEAR(reading(channel.id), before, 0.01);
}

TEST_F(InputGainsTests, aMasterControlIsSharedByAllInputs) {
    engine->selectedDeviceUID.set("desk");
    const auto b = addChannel("B", "desk", 5);
    moveTo(desk, sharedAt(-3.0));
    EXPECT_TRUE(engine->currentInputGain()->isShared);
    EXPECT_TRUE(engine->inputGain(b)->isShared);
    EXPECT_EQ(engine->inputGain(b)->currentDB, -3.0);
    engine->setInputGain(-9.0, b);
    EXPECT_EQ(mainGainDB(), -9.0);
    EXPECT_EQ(engine->inputGain(b)->currentDB, -9.0);
}

TEST_F(InputGainsTests, setGoesToBothInputsOfAPairAndIsKeptInRange) {
    engine->selectedDeviceUID.set("desk");
    engine->mainInputIsStereo.set(true);
    moveTo(desk, eachAt(-3.0));
    engine->setInputGain(7.0);
    EXPECT_EQ(audio.controls(desk).gainsDB[0], 0.0);
    EXPECT_EQ(audio.controls(desk).gainsDB[1], 0.0);
    EXPECT_EQ(audio.controls(desk).gainsDB[2], -3.0);
    EXPECT_EQ(mainGainDB(), 0.0);
    EXPECT_FALSE(engine->errorMessage());
    const auto pair = addChannel("B", "desk", 4, 6);
    engine->setInputGain(-20.0, pair);
    EXPECT_EQ(audio.controls(desk).gainsDB[4], -20.0);
    EXPECT_EQ(audio.controls(desk).gainsDB[5], -3.0);
    EXPECT_EQ(audio.controls(desk).gainsDB[6], -20.0);
    EXPECT_EQ(engine->inputGain(pair)->currentDB, -20.0);
    EXPECT_EQ(mainGainDB(), 0.0);
}

TEST_F(InputGainsTests, aRefusalIsToldAndChangesNothing) {
    const auto b = addChannel("B", "desk", 5);
    auto controls = eachAt(-3.0);
    controls.refusesToBeSet = true;
    moveTo(desk, controls);
    const auto refusal = engine->setInputGain(-9.0, b);
    EXPECT_EQ(refusal, "Couldn't set input gain — this device may not support it in software.");
    EXPECT_EQ(engine->errorMessage(), refusal);
    EXPECT_EQ(engine->inputGain(b)->currentDB, -3.0);
    engine->dismissError();
    EXPECT_FALSE(engine->setInputGain(-9.0, addChannel("C", "gone", 0)));
    EXPECT_FALSE(engine->errorMessage());
}

TEST_F(InputGainsTests, aDeviceMayHaveAVolumeAndNoGain) {
    FakeControls controls;
    controls.volume = 0.25F;
    moveTo(mic, controls);
    engine->refreshInputVolume();
    EXPECT_EQ(engine->currentInputVolumeScalar(), 0.25F);
    EXPECT_FALSE(engine->currentInputGain());
    engine->setInputVolume(0.5F);
    EXPECT_EQ(engine->currentInputVolumeScalar(), 0.5F);
    EXPECT_FALSE(engine->errorMessage());
}

TEST_F(InputGainsTests, gainsStandUnderTheDeviceAndTheInput) {
    audio.setDefaultInput(desk);
    moveTo(desk, eachAt(-5.0));
    moveTo(mic, eachAt(-7.0, 1));
    addChannel("B", std::nullopt, 2);
    addChannel("C", "mic", 0);
    addChannel("D", TarvaneKit::systemOutputUID, 0);
    addChannel("E", "gone", 0);
    const auto& gains = engine->deviceGains();
    ASSERT_EQ(gains.size(), 2U);
    EXPECT_EQ(gains.at("#2").currentDB, -5.0);
    EXPECT_EQ(gains.at("mic#0").currentDB, -7.0);
    EXPECT_FALSE(engine->inputGain(engine->extraChannels()[2]));
}

TEST_F(InputGainsTests, oneObservationPerDeviceListensToAllItsInputs) {
    addChannel("B", "desk", 4, 6);
    addChannel("C", "desk", 1);
    EXPECT_EQ(audio.observedChannels(desk), (Channels{{1, 4, 6}}));
    EXPECT_EQ(audio.observedChannels(mic), (Channels{{0}}));  // the main input's
    engine->selectedDeviceUID.set("desk");
    EXPECT_EQ(audio.observedChannels(desk), (Channels{{0}, {1, 4, 6}}));
    EXPECT_EQ(audio.observedChannels(mic), Channels{});
    engine->mainInputIsStereo.set(true);
    EXPECT_EQ(audio.observedChannels(desk), (Channels{{0, 1}, {1, 4, 6}}));
}

TEST_F(InputGainsTests, withoutExtraChannelsNothingOfTheirsIsKeptOrHeard) {
    moveTo(desk, eachAt(-5.0));
    const auto b = addChannel("B", "desk", 4);
    EXPECT_FALSE(engine->deviceGains().empty());
    engine->removeChannel(b.id);
    EXPECT_TRUE(engine->deviceGains().empty());
    EXPECT_EQ(audio.observedChannels(desk), Channels{});
}

TEST_F(InputGainsTests, aDeviceThatGoesTakesItsGainAlongAndBringsItBack) {
    moveTo(desk, eachAt(-5.0));
    engine->selectedDeviceUID.set("desk");
    EXPECT_EQ(mainGainDB(), -5.0);
    audio.unplug("desk");
    waitUntil([&] { return engine->availableDevices().size() == 1; });
    settleGains();
    EXPECT_FALSE(engine->currentInputGain());
    EXPECT_EQ(audio.observedChannels(desk), Channels{});
    audio.setControls(77, eachAt(-8.0));
    audio.plugIn({.id = 77, .uid = "desk", .name = "Desk", .channelCount = 8});
    waitUntil([&] { return engine->availableDevices().size() == 2; });
    EXPECT_EQ(mainGainDB(), -8.0);
}

TEST_F(InputGainsTests, theSystemsOutputHasNoGain) {
    moveTo(mic, eachAt(-5.0, 1));
    EXPECT_EQ(mainGainDB(), -5.0);
    engine->selectedDeviceUID.set(TarvaneKit::systemOutputUID);
    EXPECT_FALSE(engine->currentInputGain());
    EXPECT_FALSE(engine->currentInputVolumeScalar());
    EXPECT_EQ(audio.observedChannels(mic), Channels{});
}

TEST_F(InputGainsTests, aCalibrationRecordsTheGainOfItsMoment) {
    moveTo(desk, eachAt(-11.0));
    engine->selectedDeviceUID.set("desk");
    const auto b = addChannel("B", "desk", 2);
    start();
    playTone("desk", 0.1);
    engine->calibrateReference(94.0, UUID::main());
    engine->calibrateReference(94.0, b.id);
    EXPECT_EQ(engine->calibration().reference->inputGainDB, -11.0);
    EXPECT_EQ(engine->extraChannels()[0].calibration->reference->inputGainDB, -11.0);
}

TEST_F(InputGainsTests, anAssignedProfileTakesTheGainOfNowAndIsStoredWithoutIt) {
    moveTo(mic, eachAt(-5.0, 1));
    engine->refreshDevices();
    auto profile = calibratedAt(0.0);
    profile.inputGain = InputGainState::create(-40.0, 0.0, -60.0, true);
    engine->calibration.set(profile);
    EXPECT_EQ(engine->calibration().inputGain, engine->currentInputGain());
    EXPECT_EQ(store.data("Tarvane.calibration")->find("inputGain\""), std::string::npos);
}

TEST_F(InputGainsTests, noListenerOutlivesTheEngine) {
    addChannel("B", "desk", 4);
    engine.reset();
    EXPECT_EQ(audio.observedChannels(desk), Channels{});
    EXPECT_EQ(audio.observedChannels(mic), Channels{});
}

}  // namespace InputGainsTests
}  // namespace TarvaneApp
