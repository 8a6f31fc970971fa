// Calibrated channels on a real audio server, while somebody turns the gain.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "Engine/Clock.h"
#include "Engine/KernelTickTimer.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Support/MemoryStore.h"
#include "Support/PrivateAudioServer.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace GainOnPipeWireTests {

using namespace TarvaneApp;
using TarvaneKit::UUID;

constexpr const char* toneUID = "tarvane.tone";
constexpr double calibratorSPL = 94.0;

class GainOnPipeWireTests : public testing::Test {
  protected:
    GainOnPipeWireTests()
        : engine({.audio = audio, .store = store, .clock = clock, .tickTimer = tickTimer}) {
        device = deviceNamed(audio, toneUID);
        engine.refreshDevices();
        engine.selectedDeviceUID.set(toneUID);
        engine.mainInputIsDigital.set(false);
        engine.addChannel();
        extra = engine.extraChannels()[0].id;
    }

    static bool runUntil(const std::function<bool()>& condition) {
        return eventually([&] {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            return condition();
        });
    }
    static void runFor(std::chrono::milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
    }
    double shown(const UUID& id) { return engine.meterChannel(id).live.currentSPLValueDB; }
    bool bothShow(double levelDB, double withinDB) {
        return std::abs(shown(UUID::main()) - levelDB) < withinDB &&
               std::abs(shown(extra) - levelDB) < withinDB;
    }
    double rawDB(const UUID& id) {
        return shown(id) - engine.channelInfo(id)->calibration.broadbandOffsetDB();
    }
    bool bothGainsAre(double gainDB) {
        const auto ofExtra = engine.inputGain(engine.extraChannels()[0]);
        return engine.currentInputGain() && ofExtra &&
               std::abs(engine.currentInputGain()->currentDB - gainDB) < 0.01 &&
               std::abs(ofExtra->currentDB - gainDB) < 0.01;
    }
    void calibrateBoth() {
        engine.start();
        // The mean power of a sine lies 3.01 dB below that of its peak.
        ASSERT_TRUE(runUntil([&] { return bothShow(sineLevelDB(-20.0), 0.01); }));
        engine.calibrateReference(calibratorSPL, UUID::main());
        engine.calibrateReference(calibratorSPL, extra);
        ASSERT_EQ(engine.errorMessage(), std::nullopt);
        ASSERT_TRUE(runUntil([&] { return bothShow(calibratorSPL, 0.05); }));
    }
    /// The readings stand where they stood, while the samples are that much lower.
    void expectSameLevelsAt(double gainDB) {
        EXPECT_TRUE(runUntil([&] { return bothGainsAre(gainDB); }));
        // Between the samples' drop and the server's word of it lies a moment: five time
        // constants of Fast and it is forgotten to 0.03 dB.
        runFor(std::chrono::milliseconds(1000));
        EXPECT_TRUE(runUntil([&] { return bothShow(calibratorSPL, 0.1); }))
            << shown(UUID::main()) << ", " << shown(extra);
        for (const UUID& id : {UUID::main(), extra}) {
            EXPECT_NEAR(rawDB(id), sineLevelDB(-20.0) + gainDB, 0.1);
        }
    }

    PrivateAudioServer server;
    ToneDevice tone{{"--channels", "2", "--tone", "1000:-20"}};
    TarvaneKit::PipeWireAudioSystem audio;
    TarvaneKit::AudioInputDevice device;
    MemoryStore store;
    SystemClock clock;
    KernelTickTimer tickTimer;
    MeterEngine engine;
    UUID extra = UUID::main();
};

TEST_F(GainOnPipeWireTests, aGainTurnedElsewhereLeavesTheReadingsWhereTheyAre) {
    calibrateBoth();
    for (const double gainDB : {-6.0, -30.0, 0.0}) {
        const double volume = std::pow(10.0, gainDB / 20.0);
        server.run({"pw-cli", "set-param", std::to_string(device.id), "Props",
                    fmt::format("{{ channelVolumes: [ {0} {0} ] }}", volume)});
        expectSameLevelsAt(gainDB);
    }
}

TEST_F(GainOnPipeWireTests, aGainSetHereIsSetOnTheServerAndCompensated) {
    calibrateBoth();
    engine.mainInputIsStereo.set(true);
    engine.setInputGain(-12.0);
    expectSameLevelsAt(-12.0);
    EXPECT_EQ(engine.errorMessage(), std::nullopt);
}

}  // namespace GainOnPipeWireTests
}  // namespace TarvaneTests
