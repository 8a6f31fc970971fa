#include "AudioIO/PipeWire/InputControls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "Support/CardRoutes.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace InputControlsTests {

using namespace TarvaneKit;

double dB(double factor) {
    return 20.0 * std::log10(factor);
}

CardRoute read(const MadeUpRoute& route) {
    std::vector<std::uint8_t> buffer;
    auto result = CardRoute::read(buildMadeUpRoute(route, buffer));
    EXPECT_TRUE(result);
    return result.value_or(CardRoute{});
}

// A converter whose mixer goes from -12 to +30 dB: 1 is the maximum, 30 dB below it is 0 dB.
MadeUpRoute converter(double mixerDB) {
    const float base = static_cast<float>(std::pow(10.0, -30.0 / 20.0));
    const float volume = base * static_cast<float>(std::pow(10.0, mixerDB / 20.0));
    return {.index = 3,
            .device = 5,
            .channelVolumes = {volume, volume},
            .isMuted = false,
            .volumeBase = base,
            .volumeStep = 1.0F / 65537.0F,
            .hardwareVolume = "true"};
}

TEST(InputControls, aCardsGainIsThatOfItsMixer) {
    for (const double mixerDB : {30.0, 12.5, 0.0, -12.0}) {
        const CardRoute route = read(converter(mixerDB));
        EXPECT_EQ(route.index, 3);
        EXPECT_EQ(route.device, 5);
        const auto gain = route.controls.gain(0);
        ASSERT_TRUE(gain);
        EXPECT_NEAR(gain->currentDB, mixerDB, 1e-4);
        EXPECT_NEAR(gain->maxDB, 30.0, 1e-4);
        EXPECT_FALSE(gain->isShared);
    }
}

TEST(InputControls, aCardsGainIsSetOnItsMixersScale) {
    const CardRoute route = read(converter(0.0));
    const auto wanted = route.controls.withGain(18.0, {1});
    ASSERT_TRUE(wanted);
    EXPECT_NEAR(wanted->gain(0)->currentDB, 0.0, 1e-4);
    EXPECT_NEAR(wanted->gain(1)->currentDB, 18.0, 1e-4);
    // Beyond its maximum it stays there.
    EXPECT_NEAR(route.controls.withGain(50.0, {0})->channelVolumes[0], 1.0F, 1e-6F);
    // What the server is asked for reads back as the same.
    std::vector<std::uint8_t> buffer;
    const auto back = CardRoute::read(*buildRoute({3, 5, *wanted}, buffer));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->index, 3);
    EXPECT_EQ(back->device, 5);
    EXPECT_EQ(back->controls.channelVolumes, wanted->channelVolumes);
}

TEST(InputControls, aCardWithoutADecibelScaleHasAVolumeAndNoGain) {
    MadeUpRoute route = converter(0.0);
    route.volumeBase = 1.0F;
    route.volumeStep = 1.0F / 32.0F;
    route.channelVolumes = {0.5F, 0.5F};
    const InputControls controls = read(route).controls;
    EXPECT_FALSE(controls.gain(0));
    EXPECT_FALSE(controls.withGain(-6.0, {0}));
    EXPECT_EQ(controls.scalar(0), 0.5F);
    EXPECT_EQ(controls.withScalar(0.25F, {0, 1})->channelVolumes, (std::vector{0.25F, 0.25F}));
    EXPECT_FALSE(controls.withScalar(std::numeric_limits<float>::quiet_NaN(), {0, 1}));
}

TEST(InputControls, aRouteWhoseVolumeIsSoftwareReadsAsOne) {
    for (const auto& hardware :
         {std::optional<std::string>(), std::optional<std::string>("false")}) {
        MadeUpRoute route = converter(0.0);
        route.volumeStep = 1.0F / 32.0F;  // of the hardware, which isn't in use
        route.channelVolumes = {0.5F, 0.25F};
        route.hardwareVolume = hardware;
        const InputControls controls = read(route).controls;
        EXPECT_NEAR(controls.gain(0)->currentDB, dB(0.5), 1e-6);
        EXPECT_NEAR(controls.gain(1)->currentDB, dB(0.25), 1e-6);
        EXPECT_EQ(controls.gain(0)->maxDB, 0.0);
    }
}

TEST(InputControls, oneVolumeForSeveralInputsIsShared) {
    InputControls controls;
    controls.channelCount = 8;
    EXPECT_FALSE(controls.gain(0));
    EXPECT_FALSE(controls.scalar(0));
    EXPECT_FALSE(controls.withGain(-6.0, {0}));
    controls.volume = 0.5F;
    EXPECT_TRUE(controls.gain(7)->isShared);
    EXPECT_NEAR(controls.gain(7)->currentDB, dB(0.5), 1e-6);
    EXPECT_NEAR(controls.withGain(-20.0, {3, 4})->volume.value(), 0.1F, 1e-6F);
    controls.volume.reset();
    controls.channelVolumes = {0.5F};
    EXPECT_TRUE(controls.gain(7)->isShared);
    EXPECT_NEAR(controls.withGain(-20.0, {7})->channelVolumes[0], 0.1F, 1e-6F);
    controls.channelCount = 1;
    EXPECT_FALSE(controls.gain(0)->isShared);
}

TEST(InputControls, aCommonVolumeMultipliesAndIsAllowedForWhenOneInputIsSet) {
    InputControls controls;
    controls.volume = 0.5F;
    controls.channelVolumes = {1.0F, 0.5F};
    EXPECT_NEAR(controls.gain(1)->currentDB, dB(0.25), 1e-6);
    EXPECT_NEAR(controls.withGain(-20.0, {1})->gain(1)->currentDB, -20.0, 1e-5);
    controls.volume = 0.0F;
    EXPECT_FALSE(controls.withGain(-20.0, {1}));
}

TEST(InputControls, aMutedOrClosedInputHasNoGain) {
    MadeUpRoute route = converter(0.0);
    route.isMuted = true;
    EXPECT_FALSE(read(route).controls.gain(0));
    EXPECT_EQ(read(route).controls.scalar(0), 0.0F);
    route.isMuted = false;
    route.channelVolumes = {0.0F, 1.0F};
    EXPECT_FALSE(read(route).controls.gain(0));
    EXPECT_TRUE(read(route).controls.gain(1));
    EXPECT_EQ(read(route).controls.scalar(0), 0.0F);
}

class InputGainTests : public testing::Test {
  protected:
    /// Sets all inputs' volumes from outside, as a desktop's mixer does.
    void setVolumes(std::uint32_t id, int channels, double gainDB) {
        std::string volumes;
        for (int i = 0; i < channels; ++i) {
            volumes += " " + std::to_string(std::pow(10.0, gainDB / 20.0));
        }
        server.run({"pw-cli", "set-param", std::to_string(id), "Props",
                    "{ channelVolumes: [" + volumes + " ] }"});
    }
    bool reads(std::uint32_t id, int channel, double gainDB) {
        const auto gain = system.inputGainDB(id, channel);
        return gain && std::abs(gain->currentDB - gainDB) < 0.01;
    }

    PrivateAudioServer server;
    PipeWireAudioSystem system;
};

TEST_F(InputGainTests, aDevicesGainsAreItsInputsOwn) {
    const auto device = deviceNamed(system, PrivateAudioServer::interfaceName);
    ASSERT_TRUE(eventually([&] { return reads(device.id, 7, 0.0); }));
    const auto gain = system.inputGainDB(device.id, 7);
    EXPECT_EQ(gain->maxDB, 0.0);
    EXPECT_EQ(gain->minDB, -60.0);
    EXPECT_FALSE(gain->isShared);
    EXPECT_EQ(system.inputVolumeScalar(device.id, 7), 1.0F);
}

TEST_F(InputGainTests, aDeviceThatIsNotThereHasNoGain) {
    EXPECT_FALSE(system.inputGainDB(4711, 0));
    EXPECT_FALSE(system.inputVolumeScalar(4711, 0));
    EXPECT_FALSE(system.setInputGainDB(-6.0, 4711, {0}));
    EXPECT_FALSE(system.setInputVolumeScalar(0.5F, 4711, {0}));
    const auto observation = system.observeInputVolume(4711, {0}, [] { ADD_FAILURE(); });
}

TEST_F(InputGainTests, aGainSetFromOutsideIsTold) {
    const auto device = deviceNamed(system, PrivateAudioServer::interfaceName);
    const auto other = deviceNamed(system, PrivateAudioServer::micName);
    ASSERT_TRUE(eventually([&] { return reads(device.id, 0, 0.0); }));
    std::atomic<int> changes = 0;
    auto observation = system.observeInputVolume(device.id, {0}, [&] { ++changes; });
    const auto ofOther = system.observeInputVolume(other.id, {0}, [] { ADD_FAILURE(); });
    setVolumes(device.id, 8, -12.0);
    EXPECT_TRUE(eventually([&] { return changes > 0; }));
    EXPECT_TRUE(eventually([&] { return reads(device.id, 3, -12.0); }));
    observation.reset();
    changes = 0;
    setVolumes(device.id, 8, -6.0);
    EXPECT_TRUE(eventually([&] { return reads(device.id, 3, -6.0); }));
    EXPECT_EQ(changes, 0);
}

TEST_F(InputGainTests, setGoesToTheInputsNamedAndNoOther) {
    const auto device = deviceNamed(system, PrivateAudioServer::interfaceName);
    ASSERT_TRUE(eventually([&] { return reads(device.id, 0, 0.0); }));
    EXPECT_TRUE(system.setInputGainDB(-18.0, device.id, {2, 5}));
    EXPECT_TRUE(eventually([&] { return reads(device.id, 2, -18.0); }));
    EXPECT_TRUE(reads(device.id, 5, -18.0));
    EXPECT_TRUE(reads(device.id, 0, 0.0));
    EXPECT_TRUE(system.setInputVolumeScalar(0.1F, device.id, {0}));
    EXPECT_TRUE(eventually([&] { return reads(device.id, 0, -20.0); }));
    EXPECT_TRUE(reads(device.id, 2, -18.0));
}

TEST_F(InputGainTests, aMutedDeviceSaysSo) {
    const auto device = deviceNamed(system, PrivateAudioServer::micName);
    ASSERT_TRUE(eventually([&] { return reads(device.id, 0, 0.0); }));
    server.run({"pw-cli", "set-param", std::to_string(device.id), "Props", "{ mute: true }"});
    EXPECT_TRUE(eventually([&] { return !system.inputGainDB(device.id, 0); }));
    EXPECT_EQ(system.inputVolumeScalar(device.id, 0), 0.0F);
    server.run({"pw-cli", "set-param", std::to_string(device.id), "Props", "{ mute: false }"});
    EXPECT_TRUE(eventually([&] { return reads(device.id, 0, 0.0); }));
}

TEST_F(InputGainTests, aDeviceThatGoesTakesItsGainAlong) {
    {
        ToneDevice tone({"--channels", "2"});
        const auto device = deviceNamed(system, "tarvane.tone");
        EXPECT_TRUE(eventually([&] { return system.inputGainDB(device.id, 1).has_value(); }));
    }
    EXPECT_TRUE(eventually([&] { return !hasDevice(system, "tarvane.tone"); }));
}

// What a calibrated channel shows: the level of its samples and the offset of its profile.
TEST_F(InputGainTests, aGainChangeLeavesTheSoundPressureWhereItIs) {
    ToneDevice tone({"--channels", "2", "--tone", "1000:-20"});
    const auto device = deviceNamed(system, "tarvane.tone");
    ASSERT_TRUE(eventually([&] { return reads(device.id, 1, 0.0); }));
    CalibrationProfile profile;
    profile.reference = ReferenceCalibration{.offsetDB = 110.0,
                                             .referenceDeviceUID = {},
                                             .referenceDeviceName = {},
                                             .calibratedAt = {},
                                             .inputGainDB = 0.0};
    const auto source = system.makeDeviceSource(device);
    Recorder recorder(*source);
    source->start();
    for (const double gainDB : {0.0, -6.0, -23.5, -3.0}) {
        if (gainDB == -3.0) {
            EXPECT_TRUE(system.setInputGainDB(gainDB, device.id, {0, 1}));
        } else {
            setVolumes(device.id, 2, gainDB);
        }
        ASSERT_TRUE(eventually([&] { return reads(device.id, 1, gainDB); }));
        recorder.record(9600);  // what was on its way before
        profile.inputGain = system.inputGainDB(device.id, 1);
        const double rawDB = levelDB(recorder.record(48000).at(1));
        EXPECT_NEAR(rawDB, sineLevelDB(-20.0) + gainDB, 0.1);
        EXPECT_NEAR(rawDB + profile.broadbandOffsetDB(), sineLevelDB(-20.0) + 110.0, 0.1);
    }
}

}  // namespace InputControlsTests
}  // namespace TarvaneTests
