#include "AudioIO/PipeWire/SystemAudioTapSource.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace SystemAudioTapSourceTests {

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

struct Sink {
    const char* name;
    int channels;
    const char* positions;
};

class CaptureOfASink : public testing::TestWithParam<Sink> {};

// A tone on the left and another on the right, into a sink of any kind. A mono sink plays both, and
// so do both of the captured channels.
TEST_P(CaptureOfASink, isStereo) {
    const Sink& sink = GetParam();
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    server.addNode("other", "Audio/Sink", sink.channels, sink.positions);
    server.setDefaultSink("other");
    ToneDevice player({"--name", "player", "--sink", "other", "--channels", "2", "--tone",
                       "1=1000:-20", "--tone", "2=500:-26"});
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    recorder.record(24000);
    const auto samples = recorder.record(48000);
    ASSERT_EQ(samples.size(), 2u);
    if (sink.channels == 1) {
        EXPECT_EQ(samples[0], samples[1]);
        EXPECT_GT(levelDB(samples[0]), -40);
        return;
    }
    EXPECT_NEAR(levelDB(samples[0]), sineLevelDB(-20), 0.1);
    EXPECT_NEAR(levelDB(samples[1]), sineLevelDB(-26), 0.1);
    EXPECT_NEAR(frequencyHz(samples[0], source->sampleRate()), 1000, 1);
    EXPECT_NEAR(frequencyHz(samples[1], source->sampleRate()), 500, 1);
}

INSTANTIATE_TEST_SUITE_P(of, CaptureOfASink,
                         testing::Values(Sink{"mono", 1, "MONO"}, Sink{"stereo", 2, "FL FR"},
                                         Sink{"surround51", 6, "FL FR FC LFE RL RR"},
                                         Sink{"surround71", 8, "FL FR FC LFE RL RR SL SR"}),
                         [](const auto& instance) { return std::string(instance.param.name); });

// The speakers beside left and right are mixed in: the centre into both, 3 dB down.
TEST(SystemAudioTapSource, theCentreOfASurroundSinkIsInBothChannels) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    server.addNode("other", "Audio/Sink", 6, "FL FR FC LFE RL RR");
    server.setDefaultSink("other");
    ToneDevice player(
        {"--name", "player", "--sink", "other", "--channels", "6", "--tone", "3=1000:-20"});
    const auto source = system.makeSystemOutputSource();
    Recorder recorder(*source);
    source->start();
    recorder.record(24000);
    for (const auto& channel : recorder.record(48000)) {
        EXPECT_NEAR(levelDB(channel), sineLevelDB(-23.01), 0.1);
    }
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

}  // namespace SystemAudioTapSourceTests
}  // namespace TarvaneTests
