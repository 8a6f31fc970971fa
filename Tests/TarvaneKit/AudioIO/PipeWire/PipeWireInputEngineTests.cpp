#include "AudioIO/PipeWire/PipeWireInputEngine.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <semaphore>
#include <thread>

#include "Support/RealtimeGuard.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace PipeWireInputEngineTests {

using namespace TarvaneKit;
using Kind = AudioIOError::Kind;

constexpr const char* toneName = "tarvane.tone";
constexpr const char* streamName = "tarvane";

/// An engine on a device of the server's.
std::unique_ptr<PipeWireInputEngine> engineOn(PipeWireAudioSystem& system, const std::string& uid) {
    auto engine = std::make_unique<PipeWireInputEngine>(system.connection());
    engine->selectDevice(deviceNamed(system, uid));
    return engine;
}

// Listens where the audio server should, and answers nobody.
class DeafServer {
  public:
    explicit DeafServer(const PrivateAudioServer&)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const std::string path = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/pipewire-0";
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        unlink(path.c_str());
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(listen(socket_, 8), 0);
    }
    ~DeafServer() { close(socket_); }
    DeafServer(const DeafServer&) = delete;
    DeafServer& operator=(const DeafServer&) = delete;

  private:
    const int socket_;
};

std::optional<Kind> startError(MultiChannelAudioSource& source) {
    try {
        source.start();
        return std::nullopt;
    } catch (const AudioIOError& error) {
        return error.kind();
    }
}

// The counter signal: frame n of channel c is ((n mod 65536) * 128 + c) / 2^23, exactly.
struct Count {
    int frame;
    int channel;
};

Count decoded(float sample) {
    const auto code = static_cast<int>(sample * 8388608.0f);
    return {code / 128, code % 128};
}

// Frames that are missing between neighbours of one channel, from the first that isn't silent on.
// Only what a wrong order or a wrong sample would look like fails.
std::int64_t missingFrames(const std::vector<float>& samples, int channel) {
    std::int64_t missing = 0;
    int expected = -1;
    for (const float sample : samples) {
        const Count count = decoded(sample);
        if (expected < 0 && sample == 0.0f) {
            continue;
        }
        if (sample == 0.0f && channel > 0) {
            ++missing;  // a block that the feeding side didn't deliver in time is silence
            continue;
        }
        EXPECT_EQ(count.channel, channel);
        if (expected >= 0) {
            missing += (count.frame - expected + 65536) % 65536;
        }
        expected = (count.frame + 1) % 65536;
        if (testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GE(expected, 0) << "The channel stayed silent.";
    return missing;
}

class CaptureOfChannels : public testing::TestWithParam<int> {};

TEST_P(CaptureOfChannels, isExactInTheDevicesOrder) {
    const int channelCount = GetParam();
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--channels", std::to_string(channelCount), "--counter"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);

    engine->start();
    EXPECT_EQ(engine->sampleRate(), 48000.0);
    // What a busy machine loses ahead of us is whole turns of the graph, and not for long: one of a
    // few recordings is nearly whole, and none holds a wrong sample.
    constexpr std::int64_t length = 96000;
    std::int64_t mostMissing = length;
    for (int attempt = 0; attempt < 5 && mostMissing >= length / 10; ++attempt) {
        const auto samples = recorder.record(length);
        ASSERT_EQ(samples.size(), static_cast<std::size_t>(channelCount));
        mostMissing = 0;
        for (int channel = 0; channel < channelCount; ++channel) {
            mostMissing = std::max(
                mostMissing, missingFrames(samples[static_cast<std::size_t>(channel)], channel));
        }
    }
    engine->stop();
    EXPECT_LT(mostMissing, length / 10);
    EXPECT_EQ(engine->statistics().droppedBlocks, 0);
}

INSTANTIATE_TEST_SUITE_P(counts, CaptureOfChannels, testing::Values(1, 2, 8, 64),
                         testing::PrintToStringParamName());

class CaptureAtGraphRate : public testing::TestWithParam<int> {};

TEST_P(CaptureAtGraphRate, takesTheGraphsRateAndNoneBelowTheLowest) {
    const int graphRate = GetParam();
    PrivateAudioServer server({.rate = graphRate});
    PipeWireAudioSystem system;
    ToneDevice tone(
        {"--graph-rate", "--channels", "2", "--tone", "1=1000:-20", "--tone", "2=500:-26"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);

    engine->start();
    const double rate = graphRate < 44100 ? 48000.0 : graphRate;
    EXPECT_EQ(engine->sampleRate(), rate);
    recorder.record(static_cast<std::int64_t>(rate / 2));
    const auto samples = recorder.record(static_cast<std::int64_t>(rate));
    engine->stop();

    EXPECT_NEAR(frequencyHz(samples[0], rate), 1000.0, 1.0);
    EXPECT_NEAR(levelDB(samples[0]), sineLevelDB(-20), 0.1);
    EXPECT_NEAR(frequencyHz(samples[1], rate), 500.0, 1.0);
    EXPECT_NEAR(levelDB(samples[1]), sineLevelDB(-26), 0.1);
}

INSTANTIATE_TEST_SUITE_P(rates, CaptureAtGraphRate, testing::Values(8000, 44100, 48000, 96000),
                         testing::PrintToStringParamName());

TEST(PipeWireInputEngine, sampleRateIs48kBeforeTheFirstStart) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    EXPECT_EQ(PipeWireInputEngine(system.connection()).sampleRate(), 48000.0);
}

TEST(PipeWireInputEngine, tellsTheDeviceThatItCapturesFrom) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto microphone = deviceNamed(system, PrivateAudioServer::micName);
    const auto interface = deviceNamed(system, PrivateAudioServer::interfaceName);
    PipeWireInputEngine engine(system.connection());
    EXPECT_EQ(engine.device(), std::nullopt);
    engine.start();
    EXPECT_EQ(engine.device(), microphone);
    engine.stop();
    engine.selectDevice(interface);
    engine.start();
    EXPECT_EQ(engine.device(), interface);
}

TEST(PipeWireInputEngine, silenceComesAsZeros) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    const auto engine = engineOn(system, PrivateAudioServer::interfaceName);
    Recorder recorder(*engine);
    engine->start();
    const auto samples = recorder.record(4800);
    ASSERT_EQ(samples.size(), 8u);
    for (const auto& channel : samples) {
        EXPECT_TRUE(std::all_of(channel.begin(), channel.end(), [](float s) { return s == 0; }));
    }
}

TEST(PipeWireInputEngine, oneChannelDeliveryClampsTheChannelIntoTheDevice) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--channels", "2", "--tone", "2=1000:-20"});
    const auto engine = engineOn(system, toneName);
    std::mutex mutex;
    std::vector<float> samples;
    engine->selectedChannelIndex = 7;
    engine->onAudioBlock = [&](const float* block, int frames) {
        const std::scoped_lock lock(mutex);
        samples.insert(samples.end(), block, block + frames);
    };
    engine->start();
    EXPECT_TRUE(eventually([&] {
        const std::scoped_lock lock(mutex);
        return samples.size() > 48000;
    }));
    engine->stop();
    samples.erase(samples.begin(), samples.begin() + 24000);
    EXPECT_NEAR(levelDB(samples), sineLevelDB(-20), 0.1);
}

TEST(PipeWireInputEngine, allChannelsTakePrecedenceOverOne) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    std::atomic<int> single = 0;
    engine.onAudioBlock = [&](const float*, int) { ++single; };
    Recorder recorder(engine);
    engine.start();
    recorder.record(4800);
    engine.stop();
    EXPECT_EQ(single, 0);
}

// Two devices of which the first is the default.
class CaptureOfTheDefault : public testing::Test {
  protected:
    CaptureOfTheDefault()
        : first(std::make_unique<ToneDevice>(std::vector<std::string>{
              "--name", "first", "--priority", "3000", "--tone", "1000:-20"})) {
        EXPECT_TRUE(eventually([&] { return isDefault("first"); }));
        engine.start();
    }
    bool isDefault(const char* uid) {
        return system.defaultInputDeviceID() == deviceNamed(system, uid).id;
    }

    PrivateAudioServer server;
    PipeWireAudioSystem system;
    std::unique_ptr<ToneDevice> first;
    ToneDevice second{
        {"--name", "second", "--priority", "2000", "--channels", "8", "--tone", "500:-26"}};
    PipeWireInputEngine engine{system.connection()};
    Recorder recorder{engine};
};

TEST_F(CaptureOfTheDefault, staysWithTheDeviceOfTheStartWhenTheDefaultMoves) {
    const auto device = deviceNamed(system, "first");
    EXPECT_EQ(engine.device(), device);
    server.setDefaultSource("second");
    ASSERT_TRUE(eventually([&] { return isDefault("second"); }));
    recorder.record(24000);
    const auto samples = recorder.record(48000);
    ASSERT_EQ(samples.size(), 1u);
    EXPECT_NEAR(frequencyHz(samples[0], engine.sampleRate()), 1000.0, 1.0);
    EXPECT_NEAR(levelDB(samples[0]), sineLevelDB(-20), 0.1);
    EXPECT_EQ(engine.device(), device);
    EXPECT_TRUE(recorder.losses().empty());
    EXPECT_EQ(server.nodeCount(streamName), 1);

    // The next start takes what is the default then.
    engine.stop();
    engine.start();
    EXPECT_EQ(engine.device(), deviceNamed(system, "second"));
    EXPECT_EQ(recorder.record(4800).size(), 8u);
}

TEST_F(CaptureOfTheDefault, itsEndIsALossAndNoOtherDeviceTakesItsPlace) {
    recorder.record(4800);
    first->kill();
    ASSERT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    // Another is the default by now, and delivers; long enough for its samples, or for a second
    // report, to come.
    ASSERT_TRUE(eventually([&] { return isDefault("second"); }));
    std::this_thread::sleep_for(std::chrono::seconds(4));
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::deviceRemoved});
    EXPECT_EQ(recorder.lastChannelCount(), 1);
    EXPECT_EQ(server.nodeCount(streamName), 0);
}

TEST_F(CaptureOfTheDefault, theEndOfALaterDefaultIsNoLoss) {
    server.setDefaultSource("second");
    ASSERT_TRUE(eventually([&] { return isDefault("second"); }));
    second.kill();
    ASSERT_TRUE(eventually([&] { return !hasDevice(system, "second"); }));
    EXPECT_NEAR(frequencyHz(recorder.record(48000)[0], engine.sampleRate()), 1000.0, 1.0);
    EXPECT_TRUE(recorder.losses().empty());
}

TEST(PipeWireInputEngine, theRateOfTheStartHoldsWhenTheGraphsRateChanges) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--graph-rate", "--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    ASSERT_EQ(engine->sampleRate(), 48000.0);

    server.forceRate(96000);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    recorder.record(48000);
    const auto begin = std::chrono::steady_clock::now();
    const auto samples = recorder.record(96000);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;

    EXPECT_EQ(engine->sampleRate(), 48000.0);
    EXPECT_NEAR(frequencyHz(samples[0], 48000), 1000.0, 1.0);
    EXPECT_NEAR(levelDB(samples[0]), sineLevelDB(-20), 0.1);
    // 96000 frames at 48 kHz are two seconds; at the graph's 96 kHz they would be one.
    EXPECT_GT(elapsed.count(), 1.5);
    EXPECT_TRUE(recorder.losses().empty());
}

TEST(PipeWireInputEngine, aPulledOutDeviceIsReportedOnceAndNothingStaysOpen) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    auto tone = std::make_unique<ToneDevice>(std::vector<std::string>{"--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    recorder.record(4800);

    tone->kill();
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
    // Long enough for a second report, as of a stall, to come.
    std::this_thread::sleep_for(std::chrono::seconds(4));
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::deviceRemoved});
    engine->stop();

    EXPECT_EQ(startError(*engine), Kind::failedToSetDevice);
    EXPECT_EQ(server.nodeCount(streamName), 0);

    // The device is back as another object of the same name.
    tone = std::make_unique<ToneDevice>(std::vector<std::string>{"--tone", "1000:-20"});
    deviceNamed(system, toneName);
    engine->start();
    recorder.record(24000);
    EXPECT_NEAR(levelDB(recorder.record(48000)[0]), sineLevelDB(-20), 0.1);
}

TEST(PipeWireInputEngine, theServersDeathIsReportedOnceAndALaterStartWorks) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    Recorder recorder(engine);
    engine.start();
    recorder.record(4800);

    server.kill();
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    EXPECT_EQ(startError(engine), Kind::noInputAvailable);
    EXPECT_THROW(system.availableInputDevices(), AudioIOError);

    server.resume();
    ASSERT_TRUE(eventually([&] { return !startError(engine); }));
    recorder.record(4800);
    engine.stop();
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::serverLost});
}

TEST(PipeWireInputEngine, withoutAServerStartFailsAtOnceAndWorksWhenItIsThere) {
    PrivateAudioServer server({.isRunning = false});
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    Recorder recorder(engine);
    EXPECT_EQ(startError(engine), Kind::noInputAvailable);
    server.resume();
    ASSERT_TRUE(eventually([&] { return !startError(engine); }));
    recorder.record(4800);
}

TEST(PipeWireInputEngine, aServerThatDoesNotAnswerFailsTheStartWithinItsLimit) {
    PrivateAudioServer server;
    server.freeze();
    {
        PipeWireAudioSystem system;
        PipeWireInputEngine engine(system.connection());
        EXPECT_EQ(startError(engine), Kind::engineStartFailed);
    }
    server.thaw();
}

TEST(PipeWireInputEngine, aServerThatHangsWhileCapturingIsAStall) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    Recorder recorder(engine);
    engine.start();
    server.freeze();
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    engine.stop();
    server.thaw();
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::stalled});
}

TEST(PipeWireInputEngine, aNodeThatTakesOverTheNumberOfTheDeviceIsNotCaptured) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    server.addNode("mine", "Audio/Source/Virtual", 1);
    const auto engine = engineOn(system, "mine");
    Recorder recorder(*engine);
    engine->start();
    const auto number = static_cast<int>(engine->device()->id);

    // While a listener keeps the loop waiting, what the server tells piles up, and comes all at
    // once: the device's end, and another device under its number.
    std::binary_semaphore waits(0);
    std::binary_semaphore mayGo(0);
    std::atomic<bool> isFirst = true;
    system.setDevicesChangedHandler([&] {
        if (isFirst.exchange(false)) {
            waits.release();
            mayGo.acquire();
        }
    });
    server.addNode("bystander", "Audio/Source/Virtual", 1);
    waits.acquire();
    server.removeNode("mine");
    bool isReused = false;
    for (int i = 0; i < 30 && !isReused; ++i) {
        const std::string name = "other" + std::to_string(i);
        server.addNode(name, "Audio/Source/Virtual", 1);
        isReused = server.nodeID(name) == number;
    }
    mayGo.release();
    EXPECT_TRUE(isReused) << "No number was given a second time, so this shows nothing.";
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::deviceRemoved});
    system.setDevicesChangedHandler(nullptr);
}

// The whole name of the first port that `pw-link` lists for a node.
std::string portOf(const PrivateAudioServer& server, const std::string& node,
                   const std::string& direction) {
    const std::string list = "\n" + server.run({"pw-link", direction});
    const auto begin = list.find("\n" + node + ":");
    EXPECT_NE(begin, std::string::npos) << list;
    return begin == std::string::npos
               ? std::string()
               : list.substr(begin + 1, list.find('\n', begin + 1) - begin - 1);
}

TEST(PipeWireInputEngine, anotherDevicesSamplesAreALossAndNotAReading) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    server.run({"pw-link", portOf(server, PrivateAudioServer::micName, "-o"),
                portOf(server, streamName, "-i")});
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::deviceRemoved});
}

TEST(PipeWireInputEngine, withoutAnyDeviceThereIsNoInput) {
    PrivateAudioServer server({.devices = PrivateAudioServer::Devices::none});
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    EXPECT_EQ(startError(engine), Kind::noInputAvailable);
}

TEST(PipeWireInputEngine, aDeviceThatIsNotThereCantBeSelected) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    try {
        engine.selectDevice({.id = 4711, .uid = "nothing", .name = "Nothing"});
        FAIL() << "A device that isn't there was selected.";
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.kind(), Kind::failedToSetDevice);
        EXPECT_EQ(error.status(), -ENODEV);
    }
    EXPECT_EQ(engine.selectedDevice(), std::nullopt);
}

TEST(PipeWireInputEngine, aDeviceThatNeverDeliversFailsWithinTheTimeLimit) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--stall-after", "0"});
    const auto engine = engineOn(system, toneName);
    try {
        engine->start();
        FAIL() << "A device without audio was opened.";
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.kind(), Kind::engineStartFailed);
        EXPECT_STREQ(error.what(),
                     "Failed to start the audio engine: The device delivered no audio within 5 "
                     "seconds.");
    }
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
}

TEST(PipeWireInputEngine, aDeviceThatStopsDeliveringIsReportedOnce) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--stall-after", "1", "--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    EXPECT_TRUE(eventually([&] { return !recorder.losses().empty(); }));
    EXPECT_EQ(recorder.losses(), std::vector{AudioSourceLoss::stalled});
    EXPECT_GT(recorder.frames(), 24000);
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
}

// What a start in another thread ends with when it is stopped from here. It must be the stop: what
// the start waits for has a limit of its own, with words of its own.
std::string endOfAStoppedStart(
    MultiChannelAudioSource& source, const std::function<void()>& untilItWaits = [] {}) {
    std::string text = "It started.";
    std::atomic<bool> isEnded = false;
    std::thread starting([&] {
        try {
            source.start();
        } catch (const AudioIOError& error) {
            text = error.what();
        }
        isEnded = true;
    });
    untilItWaits();
    while (!isEnded) {  // a stop ahead of the start ends nothing
        source.stop();
    }
    starting.join();
    return text;
}

constexpr const char* cancelled = "Failed to start the audio engine: The start was cancelled.";

TEST(StopDuringAStart, endsTheWaitForAudio) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--stall-after", "0"});
    const auto engine = engineOn(system, toneName);
    EXPECT_EQ(
        endOfAStoppedStart(
            *engine,
            [&] { EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 1; })); }),
        cancelled);
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
}

TEST(StopDuringAStart, endsTheWaitForTheFirstAnswerOfAServer) {
    PrivateAudioServer server;
    server.freeze();
    {
        PipeWireAudioSystem system;
        PipeWireInputEngine engine(system.connection());
        EXPECT_EQ(endOfAStoppedStart(engine), cancelled);
    }
    server.thaw();
}

TEST(StopDuringAStart, endsTheWaitForAFormatOfAServerThatHangs) {
    PrivateAudioServer server;
    {
        PipeWireAudioSystem system;
        const auto engine = engineOn(system, PrivateAudioServer::micName);
        server.freeze();
        EXPECT_EQ(endOfAStoppedStart(*engine), cancelled);
        const auto output = system.makeSystemOutputSource();
        EXPECT_EQ(endOfAStoppedStart(*output),
                  AudioIOError::systemAudioTapFailed(-ECANCELED).what());
    }
    server.thaw();
}

// Whoever listens on the server's socket doesn't even take the connection.
TEST(StopDuringAStart, endsTheWaitForAServerThatTakesNoConnection) {
    PrivateAudioServer server({.isRunning = false});
    {
        const DeafServer deaf(server);
        PipeWireAudioSystem system;
        PipeWireInputEngine engine(system.connection());
        EXPECT_EQ(endOfAStoppedStart(engine), cancelled);
        EXPECT_THROW(system.availableInputDevices(), AudioIOError);
    }
}

TEST(PipeWireInputEngine, closesWhileTheServerHangs) {
    PrivateAudioServer server;
    {
        PipeWireAudioSystem system;
        const auto stopped = engineOn(system, PrivateAudioServer::micName);
        const auto destroyed = engineOn(system, PrivateAudioServer::interfaceName);
        Recorder recorder(*stopped);
        stopped->start();
        destroyed->start();
        recorder.record(4800);
        server.freeze();
        stopped->stop();
        const std::int64_t frames = recorder.frames();
        EXPECT_TRUE(recorder.losses().empty()) << "It waited until this was a stall.";
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_EQ(recorder.frames(), frames);
    }
    // The second source and the connection are gone, and the server still hangs.
    server.thaw();
}

TEST(PipeWireInputEngine, quickStartsAndStopsLeaveNothingOpen) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    PipeWireInputEngine engine(system.connection());
    std::atomic<bool> isOpen = false;
    engine.onAudioBuffer = [&](const float* const*, int, int) { EXPECT_TRUE(isOpen); };
    for (int i = 0; i < 20; ++i) {
        isOpen = true;
        engine.start();
        engine.stop();
        isOpen = false;
        engine.stop();
    }
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
}

TEST(PipeWireInputEngine, startingTwiceLeavesOneStreamAndDestructionNone) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    {
        PipeWireInputEngine engine(system.connection());
        engine.start();
        engine.start();
        EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 1; }));
    }
    EXPECT_TRUE(eventually([&] { return server.nodeCount(streamName) == 0; }));
}

TEST(PipeWireInputEngine, severalDevicesAreOpenSideBySide) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    std::vector<std::unique_ptr<ToneDevice>> tones;
    std::vector<std::unique_ptr<PipeWireInputEngine>> engines;
    std::vector<std::unique_ptr<Recorder>> recorders;
    for (int i = 0; i < 4; ++i) {
        const std::string name = "tone" + std::to_string(i);
        tones.push_back(std::make_unique<ToneDevice>(
            std::vector<std::string>{"--name", name, "--tone", "1000:" + std::to_string(-20 - i)}));
        engines.push_back(engineOn(system, name));
        recorders.push_back(std::make_unique<Recorder>(*engines.back()));
    }
    std::vector<std::thread> starts;
    for (auto& engine : engines) {
        starts.emplace_back([&engine] { engine->start(); });
    }
    for (auto& start : starts) {
        start.join();
    }
    for (int i = 0; i < 4; ++i) {
        auto& recorder = *recorders[static_cast<std::size_t>(i)];
        recorder.record(24000);
        EXPECT_NEAR(levelDB(recorder.record(48000)[0]), sineLevelDB(-20 - i), 0.1);
    }
}

TEST(PipeWireInputEngine, aVolumeSetFromOutsideIsUndone) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    const std::string id = std::to_string(server.nodeID(streamName));
    for (const char* change :
         {"{ volume: 0.1 }", "{ channelVolumes: [ 0.25 ] }", "{ mute: true }"}) {
        server.run({"pw-cli", "set-param", id, "Props", change});
        recorder.record(9600);
        EXPECT_NEAR(levelDB(recorder.record(48000)[0]), sineLevelDB(-20), 0.1) << change;
    }
}

TEST(PipeWireInputEngine, theProcessCallbackNeitherAllocatesNorLocks) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--channels", "64", "--noise", "-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    const auto before = RealtimeGuard::counts();
    engine->start();
    recorder.record(96000);
    engine->stop();
    EXPECT_GT(engine->statistics().blocks, 0);
    EXPECT_EQ(RealtimeGuard::counts(), before);
}

TEST(PipeWireInputEngine, aSlowHandlerLosesNothing) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--channels", "2", "--counter"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    auto take = engine->onAudioBuffer;
    std::atomic<int> naps = 0;
    engine->onAudioBuffer = [&](const float* const* channels, int count, int frames) {
        take(channels, count, frames);
        if (naps < 3 && recorder.frames() > 48000 * (naps + 1)) {
            ++naps;
            std::this_thread::sleep_for(std::chrono::milliseconds(700));
        }
    };
    engine->start();
    EXPECT_TRUE(eventually([&] { return recorder.frames() > 192000; }));
    engine->stop();
    EXPECT_EQ(naps, 3);
    EXPECT_EQ(engine->statistics().droppedBlocks, 0);
    EXPECT_LT(missingFrames(recorder.samples()[1], 1), 9600);
}

// What may happen to a stream without any audio being lost.
struct Undisturbed {
    const char* name;
    std::vector<std::string> tone;
    int rate;
    std::function<void(PrivateAudioServer&)> happens;
};

class CaptureWithoutLoss : public testing::TestWithParam<Undisturbed> {};

// A busy machine does lose audio. A false alarm comes each time.
TEST_P(CaptureWithoutLoss, tellsOfNone) {
    std::int64_t least = 1;
    for (int attempt = 0; attempt < 20 && least > 0; ++attempt) {
        PrivateAudioServer server({.rate = GetParam().rate});
        PipeWireAudioSystem system;
        ToneDevice tone(GetParam().tone);
        const auto engine = engineOn(system, toneName);
        Recorder recorder(*engine);
        engine->start();
        recorder.record(14400);
        const std::int64_t before = recorder.lostFrames();
        GetParam().happens(server);
        recorder.record(14400);
        const std::int64_t lost = recorder.lostFrames() - before;
        least = attempt == 0 ? lost : std::min(least, lost);
        EXPECT_TRUE(recorder.losses().empty());
    }
    EXPECT_EQ(least, 0);
}

void nothingHappens(PrivateAudioServer&) {}

void changeTheQuantum(PrivateAudioServer& server) {
    for (const int frames : {1024, 256, 1500, 512}) {
        server.forceQuantum(frames);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

void changeTheRate(PrivateAudioServer& server) {
    for (const int rate : {96000, 44100, 48000}) {
        server.forceRate(rate);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
}

INSTANTIATE_TEST_SUITE_P(
    when, CaptureWithoutLoss,
    testing::Values(Undisturbed{"nothingHappens", {"--channels", "2"}, 48000, nothingHappens},
                    Undisturbed{"theDeviceIsResampled", {"--rate", "44100"}, 48000, nothingHappens},
                    Undisturbed{"theStreamIsResampled", {"--graph-rate"}, 8000, nothingHappens},
                    Undisturbed{"theQuantumChanges", {}, 48000, changeTheQuantum},
                    Undisturbed{"theQuantumOfAResampledStreamChanges", {}, 8000, changeTheQuantum},
                    Undisturbed{"theRateChanges", {"--graph-rate"}, 48000, changeTheRate}),
    [](const auto& instance) { return std::string(instance.param.name); });

// While it hangs no turn of the graph reaches us, though the graph's clock goes on.
TEST(PipeWireInputEngine, theTimeOfADeviceThatHungIsToldAsLost) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    recorder.record(24000);
    const std::int64_t before = recorder.lostFrames();
    const auto begin = std::chrono::steady_clock::now();
    tone.freeze();
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    tone.thaw();
    recorder.record(24000);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;

    const auto lost = static_cast<double>(recorder.lostFrames() - before);
    EXPECT_GT(lost, 0.5 * 48000);
    // It is told once: with what came it is no more than the time that went by.
    EXPECT_LT(lost + 24000, (elapsed.count() + 0.1) * 48000);
    EXPECT_TRUE(recorder.losses().empty());
}

TEST(PipeWireInputEngine, takesTheBlocksThatTheServerGives) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--channels", "2", "--tone", "1000:-20"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    const auto blockLength = [&] {
        const auto blocks = recorder.blocks();
        return blocks.empty() ? 0 : blocks.back().frameCount;
    };
    // More than the 256 that a stream asks for.
    server.setSmallestQuantum(512);
    engine->start();
    EXPECT_TRUE(eventually([&] { return blockLength() == 512; })) << blockLength();
    // The most that a server has.
    server.forceQuantum(8192);
    EXPECT_TRUE(eventually([&] { return blockLength() == 8192; })) << blockLength();
    for (const auto& channel : recorder.record(96000)) {
        EXPECT_NEAR(levelDB(channel), sineLevelDB(-20), 0.1);
        EXPECT_NEAR(frequencyHz(channel, engine->sampleRate()), 1000, 1);
    }
    EXPECT_EQ(engine->statistics().droppedBlocks, 0);
}

// The server's buffers hold 8192 frames. A turn of 2048 at 8 kHz is 12288 at 48 kHz.
TEST(PipeWireInputEngine, whatHasNoRoomInTheServersBuffersIsToldAsLost) {
    PrivateAudioServer server({.rate = 8000});
    PipeWireAudioSystem system;
    ToneDevice tone({"--graph-rate"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    engine->start();
    server.forceQuantum(2048);
    EXPECT_TRUE(eventually([&] {
        const auto blocks = recorder.blocks();
        return blocks.size() > 2 && blocks.back().frameCount == 8192 &&
               blocks.back().missingAhead == 4096;
    }));
}

TEST(PipeWireInputEngine, whatAHandlerThatIsTooLateLosesIsToldAheadOfTheNextBlock) {
    PrivateAudioServer server;
    PipeWireAudioSystem system;
    ToneDevice tone({"--counter"});
    const auto engine = engineOn(system, toneName);
    Recorder recorder(*engine);
    auto take = engine->onAudioBuffer;
    std::atomic<bool> mayNap = true;
    engine->onAudioBuffer = [&](const float* const* channels, int count, int frames) {
        take(channels, count, frames);
        if (recorder.frames() > 24000 && mayNap.exchange(false)) {
            eventually([&] { return engine->statistics().droppedFrames > 4800; });
        }
    };
    engine->start();
    EXPECT_TRUE(eventually([&] { return !mayNap && recorder.frames() > 120000; }));
    engine->stop();
    const auto dropped = engine->statistics().droppedFrames;
    ASSERT_GT(dropped, 4800);
    const auto blocks = recorder.blocks();
    const auto late = std::max_element(
        blocks.begin(), blocks.end(),
        [](const auto& a, const auto& b) { return a.missingAhead < b.missingAhead; });
    ASSERT_GE(late->missingAhead, dropped);
    // The signal tells the same; turns that a busy machine missed meanwhile are in one or the
    // other.
    const auto samples = recorder.samples()[0];
    const auto at = static_cast<std::size_t>(late->begin);
    const int jump =
        (decoded(samples[at]).frame - decoded(samples[at - 1]).frame - 1 + 65536) % 65536;
    EXPECT_NEAR(jump, static_cast<double>(late->missingAhead), 2400);
}

}  // namespace PipeWireInputEngineTests
}  // namespace TarvaneTests
