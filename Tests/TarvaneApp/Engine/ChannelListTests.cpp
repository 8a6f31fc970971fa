#include "Records/ExtraChannels.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelListTests {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::ReferenceCalibration;
using TarvaneKit::RGBAColor;
using TarvaneKit::UUID;

constexpr const char* someID = "11111111-2222-4333-8444-555555555555";

std::optional<ChannelConfig> decoded(const std::string& members) {
    return TarvaneKit::decode<ChannelConfig>(std::string(R"({"id":")") + someID + "\"" + members +
                                             "}");
}

CalibrationProfile calibrated(double offsetDB) {
    CalibrationProfile profile;
    profile.reference = ReferenceCalibration{.offsetDB = offsetDB,
                                             .referenceDeviceUID = {},
                                             .referenceDeviceName = {},
                                             .calibratedAt = {},
                                             .inputGainDB = {}};
    return profile;
}

TEST(ChannelConfigCoding, missingKeysGiveTheToldDefaults) {
    const auto config = decoded("");
    ASSERT_TRUE(config);
    EXPECT_EQ(config->id.text(), someID);
    EXPECT_EQ(config->name, "Channel");
    EXPECT_FALSE(config->deviceUID);
    EXPECT_EQ(config->channelIndex, 0);
    EXPECT_EQ(config->color, (RGBAColor{0.3, 0.7, 1.0, 1.0}));
    EXPECT_TRUE(config->isEnabled);
    EXPECT_TRUE(config->isDigital);
    EXPECT_FALSE(config->calibration);
    EXPECT_EQ(config->spectrogramRanges, SpectrogramRanges{});
    EXPECT_FALSE(config->ringOutEnabled);
    EXPECT_FALSE(config->isStereo);
    EXPECT_EQ(config->rightChannelIndex, 1);
    EXPECT_FALSE(config->measuresLoudness);
    EXPECT_FALSE(config->display);
}

TEST(ChannelConfigCoding, failsWithoutAnID) {
    EXPECT_FALSE(TarvaneKit::decode<ChannelConfig>(R"({"name":"x"})"));
}

TEST(ChannelConfigCoding, anOldMonoRecordIsReadyForStereo) {
    const auto config = decoded(R"(,"channelIndex":4)");
    EXPECT_FALSE(config->isStereo);
    EXPECT_EQ(config->rightChannelIndex, 5);
}

TEST(ChannelConfigCoding, ringOutFollowsTheKindOfSourceWhereItIsMissing) {
    EXPECT_FALSE(decoded(R"(,"isDigital":true)")->ringOutEnabled);
    EXPECT_TRUE(decoded(R"(,"isDigital":false)")->ringOutEnabled);
    EXPECT_FALSE(decoded(R"(,"isDigital":false,"ringOutEnabled":false)")->ringOutEnabled);
}

TEST(ChannelConfigCoding, aLegacyRangeBecomesTheOneItsCeilingTells) {
    const auto ranges = [](const std::string& members) {
        return decoded(members)->spectrogramRanges;
    };
    EXPECT_EQ(ranges(R"(,"spectrogramFloorDB":40,"spectrogramCeilingDB":100)"),
              (SpectrogramRanges{.spl = {40.0, 100.0}, .dbfs = {-100.0, -20.0}}));
    EXPECT_EQ(ranges(R"(,"spectrogramFloorDB":-90,"spectrogramCeilingDB":-10)"),
              (SpectrogramRanges{.spl = {30.0, 110.0}, .dbfs = {-90.0, -10.0}}));
    EXPECT_EQ(ranges(R"(,"spectrogramFloorDB":0,"spectrogramCeilingDB":20)"),
              (SpectrogramRanges{.spl = {30.0, 110.0}, .dbfs = {0.0, 20.0}}));
    EXPECT_EQ(ranges(R"(,"spectrogramFloorDB":40,"spectrogramCeilingDB":42)"), SpectrogramRanges{});
    EXPECT_EQ(ranges(R"(,"spectrogramFloorDB":40,"spectrogramCeilingDB":43)").spl,
              (SpectrogramRange{40.0, 43.0}));
    EXPECT_EQ(ranges(R"(,"spectrogramFloorDB":40)"), SpectrogramRanges{});
    // A record of today wins over what an old one left.
    EXPECT_EQ(ranges(R"(,"spectrogramRanges":{},"spectrogramFloorDB":40,)"
                     R"("spectrogramCeilingDB":100)"),
              SpectrogramRanges{});
}

TEST(ChannelConfigCoding, roundTripsAndLeavesAbsentOptionalsOut) {
    ChannelConfig config;
    config.name = "Stage";
    config.calibration = calibrated(101.5);
    config.display = ChannelDisplaySettings{};
    config.display->targetCurveName.reset();
    config.spectrogramRanges.spl = {20.0, 90.0};
    EXPECT_EQ(TarvaneKit::decode<ChannelConfig>(TarvaneKit::encode(config).value()), config);

    const std::string text = TarvaneKit::encode(ChannelConfig{}).value();
    EXPECT_EQ(text.find("deviceUID"), std::string::npos);
    EXPECT_EQ(text.find("calibration"), std::string::npos);
    EXPECT_EQ(text.find("display"), std::string::npos);
    EXPECT_NE(text.find("spectrogramRanges"), std::string::npos);
}

TEST(ChannelDisplaySettingsCoding, aMissingCurveIsNoCurveWhereasANewRecordHasTheXCurve) {
    EXPECT_FALSE(TarvaneKit::decode<ChannelDisplaySettings>("{}")->targetCurveName);
    EXPECT_EQ(ChannelDisplaySettings{}.targetCurveName, "X-Curve (SMPTE ST202 / ISO 2969)");
}

TEST(ChannelDisplaySettings, onlyTheMetricsFieldsMakeTheMetricDiffer) {
    const ChannelDisplaySettings base;
    const auto differs = [&](auto edit) {
        ChannelDisplaySettings changed;
        edit(changed);
        return changed.metricDiffers(base);
    };
    EXPECT_TRUE(differs([](auto& d) { d.metricMode = MetricMode::leq; }));
    EXPECT_TRUE(differs([](auto& d) { d.splWeighting = TarvaneKit::Weighting::c; }));
    EXPECT_TRUE(differs([](auto& d) { d.splTimeWeighting = TarvaneKit::TimeWeighting::slow; }));
    EXPECT_TRUE(differs([](auto& d) { d.peakWeighting = TarvaneKit::Weighting::z; }));
    EXPECT_FALSE(differs([](auto& d) { d.showsDBFS = true; }));
    EXPECT_FALSE(differs([](auto& d) { d.octaveNormalized = false; }));
}

class ChannelListTests : public TarvaneTests::EngineFixture {};

TEST_F(ChannelListTests, theMainInputIsDescribedByTheEnginesFields) {
    engine->selectedDeviceUID.set("desk");
    engine->selectedChannelIndex.set(2);
    engine->calibration.set(calibrated(100.0));
    auto info = engine->mainChannelInfo();
    EXPECT_EQ(info.id, UUID::main());
    EXPECT_EQ(info.name, "Main Input");
    EXPECT_EQ(info.deviceUID, "desk");
    EXPECT_EQ(info.channelIndex, 2);
    EXPECT_FALSE(info.rightChannelIndex);
    EXPECT_EQ(info.calibration.broadbandOffsetDB(), 100.0);
    engine->mainInputIsStereo.set(true);
    engine->mainInputRightChannelIndex.set(5);
    engine->mainInputIsDigital.set(true);
    info = engine->mainChannelInfo();
    EXPECT_EQ(info.rightChannelIndex, 5);
    EXPECT_EQ(info.calibration, MeterEngine::uncalibrated());
}

TEST_F(ChannelListTests, aDigitalChannelKeepsItsCalibrationOnRecordAndSetsItAside) {
    auto config = addChannel("B", "desk", 0);
    auto channels = engine->extraChannels();
    channels[0].calibration = calibrated(90.0);
    channels[0].isDigital = true;
    engine->extraChannels.set(channels);
    EXPECT_EQ(engine->channelInfo(config.id)->calibration, MeterEngine::uncalibrated());
    EXPECT_EQ(engine->extraChannels()[0].calibration, calibrated(90.0));
    channels[0].isDigital = false;
    engine->extraChannels.set(channels);
    EXPECT_EQ(engine->channelInfo(config.id)->calibration, calibrated(90.0));
}

TEST_F(ChannelListTests, anUnknownChannelIsMadeForItsViewAndResolvesToTheMainInput) {
    const UUID unknown = UUID::random();
    const MeterChannel& channel = engine->meterChannel(unknown);
    EXPECT_EQ(channel.id, unknown);
    EXPECT_EQ(&engine->meterChannel(unknown), &channel);
    EXPECT_EQ(engine->resolvedChannelID(unknown), UUID::main());
    const auto config = addChannel("B", "desk", 0);
    EXPECT_EQ(engine->resolvedChannelID(config.id), config.id);
    EXPECT_FALSE(engine->channelInfo(unknown));
}

TEST_F(ChannelListTests, aChannelIsFoundWhateverWasLookedUpBeforeAndWhateverIsRemoved) {
    for (const char* name : {"A", "B", "C", "D"}) {
        addChannel(name, "desk", 0);
    }
    const auto expectAllFound = [&] {
        const auto channels = engine->extraChannels();
        for (const ChannelConfig& first : channels) {
            for (const ChannelConfig& second : channels) {
                EXPECT_EQ(engine->channelInfo(first.id)->name, first.name);
                EXPECT_EQ(engine->channelInfo(second.id)->name, second.name);
            }
        }
    };
    expectAllFound();
    const UUID removed = engine->extraChannels().back().id;
    EXPECT_EQ(engine->channelInfo(removed)->name, "D");
    engine->removeChannel(removed);
    EXPECT_FALSE(engine->channelInfo(removed));
    expectAllFound();
    auto channels = engine->extraChannels();
    std::ranges::reverse(channels);
    engine->extraChannels.set(channels);
    expectAllFound();
}

TEST_F(ChannelListTests, devicesHaveTheirDisplayNames) {
    EXPECT_EQ(engine->deviceDisplayName(std::nullopt), "Default Input");
    EXPECT_EQ(engine->deviceDisplayName(TarvaneKit::systemOutputUID), "System Output");
    EXPECT_EQ(engine->deviceDisplayName("desk"), "Desk");
    engine->selectedDeviceUID.set("desk");
    audio.unplug("desk");
    waitUntil([&] { return engine->availableDevices().size() == 1; });
    EXPECT_EQ(engine->deviceDisplayName("desk"), "Unavailable Device");
    EXPECT_EQ(engine->selectedDeviceUID(), "desk");
}

TEST_F(ChannelListTests, channelCountsFallBackToTheDefaultInput) {
    EXPECT_EQ(engine->channelCount(TarvaneKit::systemOutputUID), 2);
    EXPECT_EQ(engine->channelCount("desk"), 8);
    EXPECT_EQ(engine->channelCount(std::nullopt), 1);
    audio.setDefaultInput(41);
    EXPECT_EQ(engine->channelCount(std::nullopt), 8);
    EXPECT_EQ(engine->channelCount("gone"), 8);
    audio.setDefaultInput(std::nullopt);
    EXPECT_EQ(engine->channelCount(std::nullopt), 1);
}

TEST_F(ChannelListTests, inputsAreDescribedInHumanNumbers) {
    const auto describe = [&](const std::optional<std::string>& uid, int index,
                              std::optional<int> right = std::nullopt) {
        ChannelInfo info = engine->mainChannelInfo();
        info.deviceUID = uid;
        info.channelIndex = index;
        info.rightChannelIndex = right;
        return engine->inputDescription(info);
    };
    EXPECT_EQ(describe("mic", 0), "Measurement Mic");
    EXPECT_EQ(describe("desk", 2), "Desk (channel 3)");
    EXPECT_EQ(describe("desk", 2, 3), "Desk (inputs 3+4, stereo)");
    EXPECT_EQ(describe(TarvaneKit::systemOutputUID, 0, 1), "System Output (stereo)");
    EXPECT_EQ(describe(TarvaneKit::systemOutputUID, 0), "System Output (left)");
    EXPECT_EQ(describe(TarvaneKit::systemOutputUID, 1), "System Output (right)");
}

TEST_F(ChannelListTests, aChannelTooManyIsToldAndNotAdded) {
    engine->extraChannels.set(std::vector<ChannelConfig>(mostExtraChannels - 1));
    engine->addChannel();
    EXPECT_EQ(engine->extraChannels().size(), mostExtraChannels);
    EXPECT_FALSE(engine->errorMessage());
    engine->addChannel();
    EXPECT_EQ(engine->extraChannels().size(), mostExtraChannels);
    EXPECT_EQ(engine->errorMessage(), "Tarvane measures at most 1024 channels.");
}

TEST_F(ChannelListTests, choosingTheSystemOutputMakesADigitalStereoPair) {
    engine->selectedDeviceUID.set("desk");
    engine->selectedChannelIndex.set(5);
    engine->selectedDeviceUID.set(TarvaneKit::systemOutputUID);
    EXPECT_EQ(engine->selectedChannelIndex(), 0);
    EXPECT_EQ(engine->mainInputRightChannelIndex(), 1);
    EXPECT_TRUE(engine->mainInputIsStereo());
    EXPECT_TRUE(engine->mainInputIsDigital());
}

TEST_F(ChannelListTests, aSmallerDeviceTakesInputsBackIntoItsRange) {
    engine->selectedDeviceUID.set("desk");
    engine->selectedChannelIndex.set(5);
    engine->mainInputIsStereo.set(true);
    engine->mainInputRightChannelIndex.set(6);
    engine->selectedDeviceUID.set("mic");
    EXPECT_EQ(engine->selectedChannelIndex(), 0);
    EXPECT_FALSE(engine->mainInputIsStereo());
}

TEST_F(ChannelListTests, virtualAndNetworkDevicesStartOutAsDigital) {
    EXPECT_FALSE(engine->isLikelyDigitalSource("mic"));
    EXPECT_FALSE(engine->isLikelyDigitalSource("gone"));
    EXPECT_FALSE(engine->isLikelyDigitalSource(std::nullopt));
    EXPECT_TRUE(engine->isLikelyDigitalSource(TarvaneKit::systemOutputUID));
    audio.setVirtual(41);
    EXPECT_TRUE(engine->isLikelyDigitalSource("desk"));
    audio.setDefaultInput(41);
    EXPECT_TRUE(engine->isLikelyDigitalSource(std::nullopt));
    audio.plugIn({.id = 60, .uid = "net", .name = "Dante Via 64x64", .channelCount = 64});
    waitUntil([&] { return engine->availableDevices().size() == 3; });
    EXPECT_TRUE(engine->isLikelyDigitalSource("net"));
    audio.setDefaultInput(std::nullopt);
    EXPECT_FALSE(engine->isLikelyDigitalSource(std::nullopt));
}

TEST_F(ChannelListTests, aCalibrationReachesARunningChannelAtOnce) {
    start();
    engine->calibration.set(calibrated(100.0));
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 4800)});
    EXPECT_NEAR(processorOf()->value(TarvaneKit::SPLMetric::peak(TarvaneKit::Weighting::z)), 80.0,
                0.01);
    engine->mainInputIsDigital.set(true);
    audio.feed("", {std::vector<float>(96000, 0.0F)});
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 4800)});
    EXPECT_NEAR(processorOf()->value(TarvaneKit::SPLMetric::peak(TarvaneKit::Weighting::z)), -20.0,
                0.01);
}

}  // namespace ChannelListTests
}  // namespace TarvaneApp
