#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <optional>
#include <vector>

#include "AudioIO/AudioIOError.h"
#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace DeviceListTests {

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

TEST(DeviceList, aDeviceWithoutADescriptionIsCalledByItsName) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--name", "monitor-world", "--description", "", "--channels", "2"});
    const auto device = deviceNamed(system, "monitor-world");
    EXPECT_EQ(device.name, "monitor-world");
    EXPECT_EQ(device.channelCount, 2);
}

TEST(DeviceList, aDeviceOfSeveralFormatsIsCountedByTheOneOfMostChannels) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice down({"--name", "down", "--channels", "8", "--also-channels", "2"});
    ToneDevice up({"--name", "up", "--channels", "2", "--also-channels", "12"});
    EXPECT_EQ(deviceNamed(system, "down").channelCount, 8);
    EXPECT_EQ(deviceNamed(system, "up").channelCount, 12);
}

/// The devices beside the standard ones, once there are so many.
std::vector<AudioInputDevice> others(PipeWireAudioSystem& system, std::size_t count) {
    std::vector<AudioInputDevice> result;
    EXPECT_TRUE(eventually([&] {
        result = system.availableInputDevices();
        std::erase_if(result,
                      [](const auto& device) { return device.uid.starts_with("tarvane.test."); });
        return result.size() == count;
    })) << result.size()
        << " rather than " << count;
    return result;
}

TEST(DeviceList, aNodeWithoutANameCanBeCaptured) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    server.addNode("", "Audio/Source/Virtual", 3);
    const auto nameless = others(system, 1);
    ASSERT_EQ(nameless.size(), 1u);
    EXPECT_TRUE(nameless[0].uid.starts_with("#")) << nameless[0].uid;
    EXPECT_EQ(nameless[0].name, "Unknown Device");
    EXPECT_EQ(nameless[0].channelCount, 3);
    const auto source = system.makeDeviceSource(nameless[0]);
    Recorder recorder(*source);
    source->start();
    EXPECT_EQ(source->device(), nameless[0]);
    EXPECT_EQ(recorder.record(4800).size(), 3u);
}

TEST(DeviceList, nodesOfOneNameAreEachCapturedAndNeverOneForTheOther) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    auto first = std::make_unique<ToneDevice>(
        std::vector<std::string>{"--name", "twin", "--tone", "1000:-20"});
    others(system, 1);
    ToneDevice second({"--name", "twin", "--tone", "500:-26"});
    const auto twins = others(system, 2);
    ASSERT_EQ(twins.size(), 2u);
    EXPECT_EQ(twins[0].uid, "twin");
    EXPECT_TRUE(twins[1].uid.starts_with("twin#")) << twins[1].uid;
    const auto frequency = [&](const AudioInputDevice& device) {
        const auto source = system.makeDeviceSource(device);
        Recorder recorder(*source);
        source->start();
        EXPECT_EQ(source->device(), device);
        return frequencyHz(recorder.record(24000)[0], source->sampleRate());
    };
    EXPECT_NEAR(frequency(twins[0]), 1000, 1);
    EXPECT_NEAR(frequency(twins[1]), 500, 1);

    // The one that is left doesn't take the other's place.
    const auto source = system.makeDeviceSource(twins[0]);
    first.reset();
    EXPECT_EQ(others(system, 1), std::vector{twins[1]});
    EXPECT_THROW(source->start(), AudioIOError);
    EXPECT_THROW(system.makeDeviceSource(twins[0]), AudioIOError);
    EXPECT_NEAR(frequency(twins[1]), 500, 1);
}

TEST(DeviceList, aDeviceThatComesBackIsListedAgainUnderItsUID) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    auto tone = std::make_unique<ToneDevice>(std::vector<std::string>{"--tone", "1000:-20"});
    const auto device = deviceNamed(system, "tarvane.tone");
    const auto source = system.makeDeviceSource(device);
    {
        Recorder recorder(*source);
        source->start();
        tone.reset();
        EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    }
    EXPECT_TRUE(eventually([&] { return !hasDevice(system, device.uid); }));
    tone = std::make_unique<ToneDevice>(std::vector<std::string>{"--tone", "500:-26"});
    const auto again = deviceNamed(system, device.uid);
    EXPECT_EQ(again.name, device.name);
    // Also by the record of before, whose number is another's by now.
    Recorder recorder(*source);
    source->start();
    EXPECT_EQ(source->device(), again);
    EXPECT_NEAR(frequencyHz(recorder.record(24000)[0], source->sampleRate()), 500, 1);
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

// Everything that a program may ask of the system; none of it waits for the server.
void askEverything(PipeWireAudioSystem& system, const AudioInputDevice& device) {
    system.inputChannelCount(device.id);
    system.defaultInputDeviceID();
    system.transportType(device.id);
    system.inputVolumeScalar(device.id, 0);
    system.inputGainDB(device.id, 0);
    system.setInputGainDB(-6, device.id, {0});
    system.setInputVolumeScalar(0.5f, device.id, {0});
    system.observeInputVolume(device.id, {0}, [] {});
    system.makeSystemOutputSource();
    system.setDevicesChangedHandler([] {});
}

TEST(DeviceList, aServerThatDoesNotAnswerIsAnErrorAndNoHang) {
    PrivateAudioServer server;
    server.freeze();
    {
        PipeWireAudioSystem system;
        const AudioInputDevice device{.id = 1, .uid = PrivateAudioServer::micName, .name = "Mic"};
        askEverything(system, device);
        EXPECT_THROW(system.availableInputDevices(), AudioIOError);
        EXPECT_EQ(system.defaultInputDeviceID(), std::nullopt);
        EXPECT_THROW(system.makeDeviceSource(device), AudioIOError);
    }
    server.thaw();
}

TEST(DeviceList, aServerThatHangsLaterLeavesTheListAsItWas) {
    PrivateAudioServer server;
    {
        PipeWireAudioSystem system;
        const auto devices = system.availableInputDevices();
        server.freeze();
        EXPECT_EQ(system.availableInputDevices(), devices);
        askEverything(system, devices[0]);
        EXPECT_NO_THROW(system.makeDeviceSource(devices[0]));
    }
    server.thaw();
}

// Between the connection to a new server and its listing there is nothing to be told.
TEST(DeviceList, aServerThatComesBackIsToldOfWithItsDevices) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto uids = [&]() -> std::optional<std::size_t> {
        try {
            return system.availableInputDevices().size();
        } catch (const AudioIOError&) {
            return std::nullopt;
        }
    };
    EXPECT_EQ(uids(), 2u);
    std::atomic<bool> isBack = false;
    std::atomic<int> emptyLists = 0;
    system.setDevicesChangedHandler([&] {
        const auto count = uids();
        emptyLists += count == 0u;
        isBack = isBack || count == 2u;
    });
    server.kill();
    EXPECT_TRUE(eventually([&] { return !uids(); }));
    server.resume();
    EXPECT_TRUE(eventually([&] { return isBack.load(); }));
    system.setDevicesChangedHandler(nullptr);
    EXPECT_EQ(emptyLists, 0);
}

TEST(DeviceList, theMicrophoneNeedsNoPermission) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    EXPECT_EQ(system.microphoneAuthorizationStatus(), MicrophoneAuthorization::authorized);
    bool granted = false;
    system.requestMicrophoneAccess([&](bool answer) { granted = answer; });
    EXPECT_TRUE(granted);
}

}  // namespace DeviceListTests
}  // namespace TarvaneTests
