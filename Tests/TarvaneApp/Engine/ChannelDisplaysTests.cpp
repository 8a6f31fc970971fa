#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelDisplaysTests {

using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::TrafficLightConfig;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

class ChannelDisplaysTests : public TarvaneTests::EngineFixture {
  protected:
    void calibrate(double offsetDB) {
        TarvaneKit::CalibrationProfile profile;
        profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = offsetDB,
                                                             .referenceDeviceUID = {},
                                                             .referenceDeviceName = {},
                                                             .calibratedAt = {},
                                                             .inputGainDB = {}};
        engine->calibration.set(profile);
    }
    void setMinMax(const UUID& id) {
        live(id).minSPLValueDB = 1.0;
        live(id).maxSPLValueDB = 2.0;
    }
    bool minMaxIsReset(const UUID& id) {
        return live(id).minSPLValueDB == std::numeric_limits<double>::infinity() &&
               live(id).maxSPLValueDB == -std::numeric_limits<double>::infinity();
    }
};

TEST_F(ChannelDisplaysTests, anImpossibleStoredCalibrationIsMended) {
    const auto offsetAfterRestart = [&](double offsetDB) {
        calibrate(offsetDB);
        makeEngine();
        return engine->calibration().reference.has_value();
    };
    EXPECT_FALSE(offsetAfterRestart(300.5));
    EXPECT_TRUE(offsetAfterRestart(-300.0));
    auto gains = engine->calibration();
    gains.reference->inputGainDB = 1e308;
    gains.micCalFile = {.sensFactorDB = -1e308, .serialNumber = "7", .points = {{1000.0, 0.0}}};
    engine->calibration.set(gains);
    makeEngine();
    EXPECT_EQ(engine->calibration().reference->offsetDB, -300.0);
    EXPECT_FALSE(engine->calibration().reference->inputGainDB);
    EXPECT_EQ(engine->calibration().micCalFile->serialNumber, "7");
    EXPECT_FALSE(engine->calibration().micCalFile->sensFactorDB);
    const auto referenceSPLAfterRestart = [&](double spl) {
        auto profile = engine->calibration();
        profile.name = "kept";
        profile.micCalFileReferenceSPL = spl;
        engine->calibration.set(profile);
        makeEngine();
        EXPECT_EQ(engine->calibration().name, "kept");
        return engine->calibration().micCalFileReferenceSPL;
    };
    EXPECT_EQ(referenceSPLAfterRestart(250.0), 94.0);
    EXPECT_EQ(referenceSPLAfterRestart(-1.0), 94.0);
    EXPECT_EQ(referenceSPLAfterRestart(200.0), 200.0);
}

TEST_F(ChannelDisplaysTests, aChangeIsToldAfterItsEffects) {
    bool ready = false;
    engine->selectedDeviceUID.set("desk");
    QObject::connect(&engine->selectedDeviceUID.notifier(), &ChangeNotifier::changed, engine.get(),
                     [&] { ready = engine->mainInputIsStereo(); });
    engine->selectedDeviceUID.set(TarvaneKit::systemOutputUID);
    EXPECT_TRUE(ready);
}

TEST_F(ChannelDisplaysTests, anExtraChannelFollowsTheMainInputUntilItHasSettingsOfItsOwn) {
    const auto b = addChannel("B", "desk", 0);
    engine->splWeighting.set(Weighting::c);
    EXPECT_EQ(engine->display(b.id).splWeighting, Weighting::c);
    engine->updateDisplay(b.id, [](auto& display) { display.splWeighting = Weighting::z; });
    EXPECT_EQ(engine->display(b.id).splWeighting, Weighting::z);
    EXPECT_EQ(engine->splWeighting(), Weighting::c);
    engine->splWeighting.set(Weighting::a);
    EXPECT_EQ(engine->display(b.id).splWeighting, Weighting::z);
}

TEST_F(ChannelDisplaysTests, aMetricChangeOfTheMainInputPinsTheFollowersToTheOldMetric) {
    const auto b = addChannel("B", "desk", 0);
    setMinMax(b.id);
    setMinMax(UUID::main());
    engine->updateDisplay(UUID::main(),
                          [](auto& display) { display.metricMode = MetricMode::peak; });
    EXPECT_EQ(engine->display(b.id).metricMode, MetricMode::spl);
    EXPECT_FALSE(minMaxIsReset(b.id));
    EXPECT_TRUE(minMaxIsReset(UUID::main()));
}

TEST_F(ChannelDisplaysTests, aDirectAssignmentOfTheMetricRestartsTheFollowers) {
    const auto b = addChannel("B", "desk", 0);
    const auto c = addChannel("C", "desk", 1);
    engine->updateDisplay(c.id, [](auto& display) { display.showsDBFS = true; });
    for (const auto& id : {b.id, c.id, UUID::main()}) {
        setMinMax(id);
    }
    engine->metricMode.set(MetricMode::peak);
    EXPECT_FALSE(engine->extraChannels()[0].display);
    EXPECT_TRUE(minMaxIsReset(b.id));
    EXPECT_TRUE(minMaxIsReset(UUID::main()));
    EXPECT_FALSE(minMaxIsReset(c.id));
}

TEST_F(ChannelDisplaysTests, aUnitChangeLeavesMinAndMax) {
    setMinMax(UUID::main());
    engine->updateDisplay(UUID::main(), [](auto& display) { display.showsDBFS = true; });
    EXPECT_TRUE(engine->splReadoutShowsDBFS());
    EXPECT_FALSE(minMaxIsReset(UUID::main()));
}

TEST_F(ChannelDisplaysTests, theDisplayedMetricIsTheOneTheDisplayNames) {
    EXPECT_EQ(engine->displayedMetric(UUID::main()),
              SPLMetric::spl(Weighting::a, TimeWeighting::fast));
    engine->metricMode.set(MetricMode::peak);
    EXPECT_EQ(engine->displayedMetric(UUID::main()), SPLMetric::peak(Weighting::c));
    engine->metricMode.set(MetricMode::leq);
    EXPECT_EQ(engine->displayedMetric(UUID::random()), SPLMetric::leq("user"));
}

TEST_F(ChannelDisplaysTests, theDigitalThresholdsJudgeTheDigitalLevel) {
    using namespace TarvaneKit::SignalColors;
    calibrate(120.0);
    EXPECT_EQ(engine->trafficLightColor(90.0, UUID::main()), yellow);
    engine->splReadoutShowsDBFS.set(true);
    EXPECT_EQ(engine->trafficLightColor(90.0, UUID::main()), green);
    EXPECT_EQ(engine->splReadoutDisplayOffsetDB(UUID::main()), 120.0);
    EXPECT_EQ(engine->levelUnitLabel(UUID::main()), "dBFS");
    EXPECT_EQ(engine->activeTrafficLight(UUID::random()).config, TrafficLightConfig::defaultDBFS());
}

TEST_F(ChannelDisplaysTests, theUnitIsDBForACalibratedChannelInSPL) {
    EXPECT_EQ(engine->levelUnitLabel(UUID::main()), "dBFS");
    calibrate(100.0);
    EXPECT_TRUE(engine->isCalibrated(UUID::main()));
    EXPECT_EQ(engine->levelUnitLabel(UUID::main()), "dB");
    EXPECT_EQ(engine->splReadoutDisplayOffsetDB(UUID::main()), 0.0);
    engine->mainInputIsDigital.set(true);
    EXPECT_FALSE(engine->isCalibrated(UUID::main()));
    EXPECT_EQ(engine->levelUnitLabel(UUID::main()), "dBFS");
}

TEST_F(ChannelDisplaysTests, anotherMetricIsReadAtOnceAlsoWhilePausedOrStopped) {
    start();
    for (int i = 0; i < 10; ++i) {
        audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000, 48000 * i)});
    }
    tick();
    engine->pause();
    engine->updateDisplay(UUID::main(), [](auto& display) {
        display.splWeighting = Weighting::z;
        display.splTimeWeighting = TimeWeighting::slow;
    });
    const auto slow = SPLMetric::spl(Weighting::z, TimeWeighting::slow);
    const auto processor = processorOf();
    EXPECT_EQ(live().currentSPLValueDB, processor->value(slow));
    EXPECT_EQ(live().minSPLValueDB, live().currentSPLValueDB);
    engine->stop();
    engine->metricMode.set(MetricMode::leq);
    EXPECT_EQ(live().currentSPLValueDB, processor->value(SPLMetric::leq("user")));
}

TEST_F(ChannelDisplaysTests, resetMinMaxClearsThePeakDetectorsToo) {
    start();
    audio.feed("", {std::vector<float>(64, 0.5F)});
    const auto processor = processorOf();
    engine->resetMinMax();
    EXPECT_EQ(processor->value(SPLMetric::peak(Weighting::z)), -240.0);
    EXPECT_GT(processor->value(SPLMetric::spl(Weighting::z, TimeWeighting::none)), -10.0);
}

TEST_F(ChannelDisplaysTests, configuringTheLeqStartsItOverOnEveryChannel) {
    const auto b = addChannel("B", "desk", 0);
    start();
    audio.feed("desk", std::vector<std::vector<float>>(8, std::vector<float>(480, 0.5F)));
    const auto leq = SPLMetric::leq("user");
    EXPECT_TRUE(std::isfinite(processorOf(b.id)->value(leq)));
    engine->configureLeq(Weighting::z, 10.0);
    EXPECT_EQ(engine->leqWeighting(), Weighting::z);
    EXPECT_EQ(engine->leqIntegrationSeconds(), 10.0);
    EXPECT_FALSE(std::isfinite(processorOf(b.id)->value(leq)));
}

}  // namespace ChannelDisplaysTests
}  // namespace TarvaneApp
