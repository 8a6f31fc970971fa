#include "AudioIO/PipeWire/SystemAudioTapSource.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace {

using namespace TarvaneKit;
using Kind = AudioIOError::Kind;

constexpr const char* streamName = "tarvane-system-output";

TEST(SystemAudioTapSource, capturesWhatTheDefaultSinkPlays) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice player({"--sink", PrivateAudioServer::speakersName, "--channels", "2", "--tone",
                       "1=1000:-20", "--tone", "2=500:-26"});
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    EXPECT_EQ(source->device(), std::nullopt);
    recorder.record(24000);
    const auto samples = recorder.record(48000);
    ASSERT_EQ(samples.size(), 2u);
    EXPECT_NEAR(levelDB(samples[0]), sineLevelDB(-20), 0.1);
    EXPECT_NEAR(levelDB(samples[1]), sineLevelDB(-26), 0.1);
    EXPECT_NEAR(frequencyHz(samples[0], source->sampleRate()), 1000, 1);
    EXPECT_NEAR(frequencyHz(samples[1], source->sampleRate()), 500, 1);
}

TEST(SystemAudioTapSource, aSilentSinkDeliversZeros) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    for (const auto& channel : recorder.record(4800)) {
        EXPECT_TRUE(std::all_of(channel.begin(), channel.end(), [](float s) { return s == 0; }));
    }
}

TEST(SystemAudioTapSource, followsTheDefaultSink) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    server.addNode("other.speakers", "Audio/Sink", 2);
    ToneDevice player(
        {"--name", "loud", "--sink", "other.speakers", "--channels", "2", "--tone", "1000:-12"});
    server.setDefaultSink(PrivateAudioServer::speakersName);
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    EXPECT_LT(levelDB(recorder.record(24000)[0]), -200);

    server.setDefaultSink("other.speakers");
    EXPECT_TRUE(eventually([&] { return levelDB(recorder.record(4800)[0]) > -20; }));
    EXPECT_NEAR(levelDB(recorder.record(48000)[1]), sineLevelDB(-12), 0.1);
    EXPECT_TRUE(recorder.losses().empty());
    EXPECT_EQ(server.nodeCount(streamName), 1);
}

TEST(SystemAudioTapSource, withoutAServerItIsUnavailable) {
    PrivateAudioServer server({.isRunning = false});
    PipeWireAudioSystem system;
    const auto source = system.makeSystemOutputSource();
    try {
        source->start();
        FAIL() << "It opened without a server.";
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.kind(), Kind::systemAudioUnavailable);
    }
}

TEST(SystemAudioTapSource, withoutASinkItFailsWithTheStatus) {
    PrivateAudioServer server({.devices = PrivateAudioServer::Devices::none});
    PipeWireAudioSystem system;
    const auto source = system.makeSystemOutputSource();
    try {
        source->start();
        FAIL() << "It opened without a sink.";
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.kind(), Kind::systemAudioTapFailed);
        EXPECT_EQ(error.status(), -ENODEV);
    }
}

TEST(SystemAudioTapSource, theServersDeathIsReportedOnce) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    server.kill();
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::serverLost});
}

TEST(SystemAudioTapSource, startingTwiceClosesTheFirstTap) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    source->start();
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 1; }));
    recorder.record(4800);
    source->stop();
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
}

}  // namespace
}  // namespace TarvaneTests
