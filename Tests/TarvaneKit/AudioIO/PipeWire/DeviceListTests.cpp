#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>

#include "AudioIO/AudioIOError.h"
#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace {

using namespace TarvaneKit;

TEST(DeviceList, namesUIDsAndChannelCountsAreTheDevicesOwn) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;

    const auto devices = system.availableInputDevices();

    ASSERT_EQ(devices.size(), 2u);
    EXPECT_EQ(devices[0].uid, "tarvane.test.mic");
    EXPECT_EQ(devices[0].name, "Measurement Mic");
    EXPECT_EQ(devices[0].channelCount, 1);
    EXPECT_EQ(devices[0].id, static_cast<std::uint32_t>(server.nodeID("tarvane.test.mic")));
    EXPECT_EQ(devices[1].uid, "tarvane.test.interface8");
    EXPECT_EQ(devices[1].name, "Test Interface 8ch");
    EXPECT_EQ(devices[1].channelCount, 8);
    EXPECT_EQ(system.inputChannelCount(devices[1].id), 8);
    EXPECT_EQ(system.inputChannelCount(4711), 0);
    EXPECT_EQ(system.defaultInputDeviceID(), devices[0].id);
}

TEST(DeviceList, withoutInputDevicesIsEmptyAndNoError) {
    PrivateAudioServer server({.devices = PrivateAudioServer::Devices::none});
    PipeWireAudioSystem system;
    EXPECT_TRUE(system.availableInputDevices().empty());
    EXPECT_EQ(system.defaultInputDeviceID(), std::nullopt);
}

TEST(DeviceList, outputsAreLeftOut) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    EXPECT_FALSE(hasDevice(system, PrivateAudioServer::speakersName));
}

TEST(DeviceList, aDeviceWithoutADescriptionIsAnUnknownDevice) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--name", "nameless", "--description", "", "--channels", "2"});
    const auto device = deviceNamed(system, "nameless");
    EXPECT_EQ(device.name, "Unknown Device");
    EXPECT_EQ(device.channelCount, 2);
}

TEST(DeviceList, followsPluggingAndUnpluggingAndTellsOfBoth) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    std::atomic<int> changes = 0;
    system.setDevicesChangedHandler([&] { ++changes; });
    EXPECT_FALSE(hasDevice(system, "tarvane.tone"));
    {
        ToneDevice tone({"--channels", "64"});
        EXPECT_EQ(deviceNamed(system, "tarvane.tone").channelCount, 64);
        EXPECT_GE(changes.exchange(0), 1);
    }
    EXPECT_TRUE(eventually([&] { return !hasDevice(system, "tarvane.tone"); }));
    EXPECT_TRUE(eventually([&] { return changes > 0; }));
}

TEST(DeviceList, aNodeWithNoDeviceBehindItIsVirtual) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto devices = system.availableInputDevices();
    ASSERT_FALSE(devices.empty());
    EXPECT_EQ(system.transportType(devices[0].id), TransportType::virtualDevice);
    EXPECT_EQ(system.transportType(4711), std::nullopt);
}

TEST(DeviceList, theDefaultInputIsFollowedAndItsMoveIsTold) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto wanted = deviceNamed(system, PrivateAudioServer::interfaceName).id;
    EXPECT_NE(system.defaultInputDeviceID(), wanted);
    // What a listener finds when it looks: nothing else on the server moves.
    std::atomic<bool> wasTold = false;
    system.setDevicesChangedHandler(
        [&] { wasTold = wasTold || system.defaultInputDeviceID() == wanted; });
    server.setDefaultSource(PrivateAudioServer::interfaceName);
    EXPECT_TRUE(eventually([&] { return wasTold.load(); }));
    system.setDevicesChangedHandler(nullptr);
}

TEST(DeviceList, withoutAServerFailsWithItsStatusAndComesWithTheServer) {
    PrivateAudioServer server({.isRunning = false});
    PipeWireAudioSystem system;
    try {
        system.availableInputDevices();
        FAIL() << "A listing without a server must fail.";
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.kind(), AudioIOError::Kind::deviceEnumerationFailed);
        EXPECT_EQ(error.status(), -EHOSTDOWN);
    }
    EXPECT_EQ(system.defaultInputDeviceID(), std::nullopt);
    EXPECT_EQ(system.inputChannelCount(1), 0);

    std::atomic<bool> changed = false;
    system.setDevicesChangedHandler([&] { changed = true; });
    server.resume();
    EXPECT_TRUE(eventually([&] { return changed.load(); }));
    EXPECT_TRUE(eventually([&] {
        try {
            return system.availableInputDevices().size() == 2;
        } catch (const AudioIOError&) {
            return false;
        }
    }));
}

TEST(DeviceList, aServerThatDoesNotAnswerIsAnErrorAndNoHang) {
    PrivateAudioServer server;
    server.freeze();
    {
        PipeWireAudioSystem system;
        EXPECT_THROW(system.availableInputDevices(), AudioIOError);
        EXPECT_EQ(system.defaultInputDeviceID(), std::nullopt);
    }
    server.thaw();
}

TEST(DeviceList, theMicrophoneNeedsNoPermission) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    EXPECT_EQ(system.microphoneAuthorizationStatus(), MicrophoneAuthorization::authorized);
    bool granted = false;
    system.requestMicrophoneAccess([&](bool answer) { granted = answer; });
    EXPECT_TRUE(granted);
}

}  // namespace
}  // namespace TarvaneTests
