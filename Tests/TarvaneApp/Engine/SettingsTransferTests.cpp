// From the engine to a snapshot and back.

#include <rapidcheck.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "Engine/SettingsTransfer.h"
#include "Records/ExtraChannels.h"
#include "Support/RecordGenerators.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Engine/EverySetting.h"
#include "TarvaneApp/Engine/PossibleSettings.h"

namespace TarvaneApp {
namespace SettingsTransferTests {
using TarvaneKit::CalibrationProfile;
using TarvaneKit::JSONValue;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::systemOutputUID;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;
using TarvaneTests::forEachSetting;
using TarvaneTests::valuesOfSettings;

// Where a setting's field in the snapshot has another name than its key in the store.
const std::map<std::string, std::string>& fieldsOfOtherNames() {
    static const std::map<std::string, std::string> fields{
        {"deviceUID", "audioInput"}, {"channelIndex", "audioInput"}, {"extraChannels", "channels"}};
    return fields;
}

// What a file of old has instead of a setting.
const std::set<std::string> legacyFields{"spectrogramFloorDB", "spectrogramCeilingDB"};

std::set<std::string> fieldNames() {
    std::set<std::string> names;
    std::apply([&](const auto&... key) { (names.emplace(key.name), ...); },
               TarvaneKit::Coding<SettingsSnapshot>::keys);
    return names;
}

std::string fieldOf(const std::string& key) {
    const auto found = fieldsOfOtherNames().find(key);
    return found != fieldsOfOtherNames().end() ? found->second : key;
}

const std::vector<std::string>& sourceUIDs() {
    static const std::vector<std::string> uids{"", "mic", "desk", "pair", systemOutputUID};
    return uids;
}

CalibrationProfile profileWithOffset(double offsetDB) {
    CalibrationProfile profile;
    profile.name = "Small capsule";
    profile.micCalFile.emplace().points = {{20.0, 1.0}, {20000.0, -3.0}};
    profile.reference.emplace().offsetDB = offsetDB;
    return profile;
}

class SettingsTransferTests : public TarvaneTests::EngineFixture {
  protected:
    SettingsTransferTests() {
        audio.plugIn({.id = 42, .uid = "pair", .name = "Pair", .channelCount = 2});
        engine->refreshDevices();
    }

    /// Gives every setting a value of any kind that it may hold.
    void setEverything() {
        using TarvaneKit::Testing::drawnValue;
        forEachSetting(*engine, [](const std::string& key, auto& setting) {
            using Value = std::remove_cvref_t<decltype(setting())>;
            setting.set(TarvaneTests::possible(key, drawnValue<Value>()));
        });
        // Which of an extra channel's calibrations may stand only a snapshot asks.
        auto channels = engine->extraChannels();
        for (ChannelConfig& channel : channels) {
            if (channel.calibration) {
                channel.calibration = TarvaneTests::possible("calibration", *channel.calibration);
            }
        }
        engine->extraChannels.set(std::move(channels));
        // A device has the last word about its inputs.
        engine->selectedDeviceUID.set(*rc::gen::element<std::optional<std::string>>(
            std::nullopt, "mic", "desk", "gone", systemOutputUID));
        engine->selectedChannelIndex.set(
            *rc::gen::inRange(0, engine->channelCount(engine->selectedDeviceUID())));
        for (auto* overlays :
             {&engine->rtaOverlayChannelIDs, &engine->levelHistoryOverlayChannelIDs}) {
            overlays->set(channelIDsThatMayStand((*overlays)()));
        }
    }

    void apply(const SettingsSnapshot& snapshot) { engine->applySettings(snapshot, true); }

    void awaitStart() {
        for (const std::string& uid : sourceUIDs()) {
            audio.open(uid);
        }
        waitUntil([&] { return !engine->isStarting(); });
    }

    /// A session with a level in it: min and max stand.
    void measure() {
        start();
        audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000)});
        tick();
    }
    bool minMaxStands() { return live().minSPLValueDB <= live().maxSPLValueDB; }
};

TEST_F(SettingsTransferTests, everySettingHasItsFieldAndEveryFieldItsSetting) {
    std::set<std::string> fieldsOfSettings = legacyFields;
    for (const auto* settings : {&engine->channelSettings(), &engine->windowSettings()}) {
        for (const SettingBase* setting : *settings) {
            fieldsOfSettings.insert(fieldOf(std::string(setting->key())));
        }
    }
    EXPECT_EQ(fieldsOfSettings, fieldNames());
    EXPECT_EQ(fieldNames().size(), 58U);
}

TEST_F(SettingsTransferTests, eachFieldHasTheValueOfItsOwnSetting) {
    EXPECT_TRUE(TarvaneKit::Testing::holdsAlways([&] {
        setEverything();
        const auto form = TarvaneKit::DateForm::iso8601;
        const JSONValue json = TarvaneKit::encodeJSON(engine->captureSettings(), form);
        forEachSetting(*engine, [&](const std::string& key, const auto& setting) {
            const JSONValue* field = json.member(fieldOf(key));
            RC_ASSERT(field != nullptr);
            static const std::map<std::string, std::string> inside{{"deviceUID", "deviceUID"},
                                                                   {"channelIndex", "channelIndex"},
                                                                   {"targetCurveName", "name"},
                                                                   {"levelHistoryChannelID", "id"}};
            if (inside.contains(key)) {
                const JSONValue* value = field->member(inside.at(key));
                field = value;
            }
            RC_ASSERT((field != nullptr ? *field : JSONValue{}) ==
                      TarvaneKit::encodeJSON(setting(), form));
        });
        for (const std::string& name : legacyFields) {
            RC_ASSERT(json.member(name) == nullptr);
        }
    }));
}

TEST_F(SettingsTransferTests, capturingAndApplyingChangesNoSetting) {
    EXPECT_TRUE(TarvaneKit::Testing::holdsAlways([&] {
        setEverything();
        const auto before = valuesOfSettings(*engine);
        const SettingsSnapshot snapshot = engine->captureSettings();
        for (const bool includeAudioAndCalibration : {true, false}) {
            engine->applySettings(snapshot, includeAudioAndCalibration);
            RC_ASSERT(valuesOfSettings(*engine) == before);
            RC_ASSERT(engine->captureSettings() == snapshot);
        }
    }));
}

TEST_F(SettingsTransferTests, aSnapshotMakesAnotherEngineTheSame) {
    EXPECT_TRUE(TarvaneKit::Testing::holdsAlways([&] {
        setEverything();
        engine->loudnessReadout.set(*rc::gen::element(
            LoudnessMetric::momentary, LoudnessMetric::shortTerm, LoudnessMetric::integrated));
        const auto expected = valuesOfSettings(*engine);
        const SettingsSnapshot snapshot = engine->captureSettings();
        store.clear();
        makeEngine();
        apply(snapshot);
        RC_ASSERT(valuesOfSettings(*engine) == expected);
        RC_ASSERT(store.isFlushed());
        makeEngine();  // each step was saved
        const bool hasCurve = snapshot.targetCurveName->name.has_value();
        auto afterRestart = valuesOfSettings(*engine);
        if (!hasCurve) {  // absent isn't stored
            afterRestart["targetCurveName"] = expected.at("targetCurveName");
        }
        RC_ASSERT(afterRestart == expected);
    }));
}

TEST_F(SettingsTransferTests, theOrderOfTheSteps) {
    addChannel("B", "desk", 3);
    engine->spectrogramPlacement.set(ModulePlacement::hidden);
    const SettingsSnapshot snapshot = engine->captureSettings();
    std::vector<std::string> told;
    forEachSetting(*engine, [&](const std::string& key, const auto& setting) {
        QObject::connect(&setting.notifier(), &ChangeNotifier::changed, engine.get(),
                         [&told, key] { told.push_back(key); });
    });
    const std::vector<std::string> withInputs{"deviceUID",
                                              "channelIndex",
                                              "calibration",
                                              "mainInputIsDigital",
                                              "mainInputRightChannelIndex",
                                              "mainInputIsStereo",
                                              "mainInputMeasuresLoudness",
                                              "extraChannels"};
    const std::vector<std::string> rest{"splMeterChannelID",
                                        "rtaChannelID",
                                        "spectrogramChannelID",
                                        "rtaOverlayChannelIDs",
                                        "levelHistoryChannelID",
                                        "levelHistoryOverlayChannelIDs",
                                        "channelWindowLayouts",
                                        "octaveFraction",
                                        "viewMode",
                                        "octaveNormalizedSpectrumDisplay",
                                        "rtaColor",
                                        "rtaPeakColor",
                                        "showPeakHold",
                                        "rtaTimeWeighting",
                                        "targetCurveName",
                                        "targetCurveReferenceDB",
                                        "targetCurveReferenceDBFS",
                                        "metricMode",
                                        "splWeighting",
                                        "splTimeWeighting",
                                        "peakWeighting",
                                        "leqWeighting",
                                        "leqIntegrationSeconds",
                                        "trafficLightConfig",
                                        "trafficLightConfigDBFS",
                                        "loudnessReadout",
                                        "loudnessTarget",
                                        "loudnessColors",
                                        "spectrogramRanges",
                                        "spectrogramTimeSpanSeconds",
                                        "spectrogramSliceHeightMultiplier",
                                        "spectrogramColorStops",
                                        "spectrogramColorPresets",
                                        "panelLayout",
                                        "panelSplitFraction",
                                        "ringOutEnabled",
                                        "ringOutSensitivity",
                                        "splMeterPlacement",
                                        "rtaPlacement",
                                        "spectrogramPlacement",
                                        "levelHistoryPlacement",
                                        "graphOrientation",
                                        "graphOrder",
                                        "levelHistoryPosition",
                                        "splReadoutShowsDBFS",
                                        "splReadoutShowsClock",
                                        "splMeterShowsLevelBar",
                                        "levelHistoryZoom",
                                        "levelHistoryShowsMomentary"};
    std::vector<std::string> all = withInputs;
    all.insert(all.end(), rest.begin(), rest.end());
    apply(snapshot);
    EXPECT_EQ(told, all);

    told.clear();
    std::vector<std::string> merged{"extraChannels"};
    merged.insert(merged.end(), rest.begin(), rest.end());
    engine->applySettings(snapshot, false);
    EXPECT_EQ(told, merged);
}

TEST_F(SettingsTransferTests, theProfileOfTheFileStandsWhateverTheDeviceIsTakenFor) {
    audio.setVirtual(42);
    SettingsSnapshot snapshot;
    snapshot.audioInput = {.deviceUID = "pair", .channelIndex = 1};
    snapshot.calibration = profileWithOffset(101.0);
    snapshot.mainInputIsDigital = false;
    apply(snapshot);
    EXPECT_EQ(engine->selectedDeviceUID(), "pair");
    EXPECT_EQ(engine->selectedChannelIndex(), 1);
    EXPECT_FALSE(engine->mainInputIsDigital());
    EXPECT_TRUE(engine->isCalibrated(UUID::main()));
    EXPECT_EQ(engine->mainChannelInfo().calibration.broadbandOffsetDB(), 101.0);
}

TEST_F(SettingsTransferTests, anEmptySnapshotChangesNothing) {
    addChannel("B", "desk", 3);
    engine->selectedTargetCurveName.set("Flat");
    const auto before = valuesOfSettings(*engine);
    store.clear();
    apply({});
    engine->applySettings({}, false);
    EXPECT_EQ(valuesOfSettings(*engine), before);
    EXPECT_TRUE(store.keys().empty());
}

TEST_F(SettingsTransferTests, anEmptyChoiceClearsAndAnAbsentOneStays) {
    const auto b = addChannel("B", "desk", 3);
    engine->selectedTargetCurveName.set("Flat");
    engine->levelHistoryChannelID.set(b.id);
    apply({});
    EXPECT_EQ(engine->selectedTargetCurveName(), "Flat");
    EXPECT_EQ(engine->levelHistoryChannelID(), b.id);
    SettingsSnapshot none;
    none.targetCurveName.emplace();
    none.levelHistoryChannelID.emplace();
    apply(none);
    EXPECT_EQ(engine->selectedTargetCurveName(), std::nullopt);
    EXPECT_EQ(engine->levelHistoryChannelID(), std::nullopt);
}

TEST_F(SettingsTransferTests, anInputThatTheDeviceHasNotLeavesTheOldOne) {
    engine->selectedDeviceUID.set("desk");
    engine->selectedChannelIndex.set(1);
    SettingsSnapshot snapshot;
    for (const int beyond : {99, 2, -1}) {
        snapshot.audioInput = {.deviceUID = "pair", .channelIndex = beyond};
        apply(snapshot);
        EXPECT_EQ(engine->selectedDeviceUID(), "pair");
        EXPECT_EQ(engine->selectedChannelIndex(), 1) << beyond;
    }
    snapshot.audioInput = {.deviceUID = "mic", .channelIndex = 99};
    apply(snapshot);
    EXPECT_EQ(engine->selectedChannelIndex(), 0);  // the old one is beyond this device
    snapshot.mainInputRightChannelIndex = -1;
    engine->mainInputRightChannelIndex.set(5);
    apply(snapshot);
    EXPECT_EQ(engine->mainInputRightChannelIndex(), 5);
}

TEST_F(SettingsTransferTests, numbersThatCanNotBeArePassedOver) {
    const auto before = valuesOfSettings(*engine);
    SettingsSnapshot snapshot;
    for (const double seconds : {0.0, -1.0, 1e300}) {
        snapshot.spectrogramTimeSpanSeconds = seconds;
        snapshot.spectrogramSliceHeightMultiplier = seconds;
        apply(snapshot);
    }
    snapshot = {};
    snapshot.targetCurveReferenceDB = 1e300;
    snapshot.targetCurveReferenceDBFS = -HUGE_VAL;
    snapshot.mainInputRightChannelIndex = 70000;
    snapshot.leqIntegrationSeconds = 1e300;
    snapshot.panelSplitFraction = std::nan("");
    snapshot.loudnessTarget = {"Never", -23.0, -1.0, -1.0};
    snapshot.trafficLightConfig = engine->trafficLightConfig();
    snapshot.trafficLightConfig->bands.front().thresholdDB = 1e300;
    snapshot.spectrogramRanges = {.spl = {50.0, 50.0}, .dbfs = {0.0, -90.0}};
    snapshot.loudnessReadout = LoudnessMetric::range;
    apply(snapshot);
    EXPECT_EQ(valuesOfSettings(*engine), before);
}

TEST_F(SettingsTransferTests, aDividerBeyondItsEndStopsThere) {
    SettingsSnapshot snapshot;
    snapshot.panelSplitFraction = 7.0;
    apply(snapshot);
    EXPECT_EQ(engine->panelSplitFraction(), 0.85);
}

// One of the two ranges can't be: the other one counts.
TEST_F(SettingsTransferTests, aRangeThatCanNotBeLeavesTheLiveOne) {
    engine->spectrogramRanges.set({.spl = {20.0, 90.0}, .dbfs = {-80.0, -10.0}});
    SettingsSnapshot snapshot;
    snapshot.spectrogramRanges = {.spl = {50.0, 40.0}, .dbfs = {-70.0, -5.0}};
    apply(snapshot);
    EXPECT_EQ(engine->spectrogramRanges(),
              (SpectrogramRanges{.spl = {20.0, 90.0}, .dbfs = {-70.0, -5.0}}));
}

TEST_F(SettingsTransferTests, aSingleOldRangeGoesToItsUnit) {
    const auto apply = [&](std::optional<double> floorDB, std::optional<double> ceilingDB) {
        engine->spectrogramRanges.set({.spl = {1.0, 5.0}, .dbfs = {-9.0, -5.0}});
        SettingsSnapshot snapshot;
        snapshot.spectrogramFloorDB = floorDB;
        snapshot.spectrogramCeilingDB = ceilingDB;
        engine->applySettings(snapshot, true);
        return engine->spectrogramRanges();
    };
    const SpectrogramRange usualSPL{30.0, 110.0};
    const SpectrogramRange usualDBFS{-100.0, -20.0};
    EXPECT_EQ(apply(-80.0, -10.0), (SpectrogramRanges{usualSPL, {-80.0, -10.0}}));
    EXPECT_EQ(apply(40.0, 100.0), (SpectrogramRanges{{40.0, 100.0}, usualDBFS}));
    EXPECT_EQ(apply(-10.0, 20.0), (SpectrogramRanges{usualSPL, {-10.0, 20.0}}));
    EXPECT_EQ(apply(-10.0, -9.0), (SpectrogramRanges{usualSPL, usualDBFS}));
    EXPECT_EQ(apply(-10.0, std::nullopt), (SpectrogramRanges{usualSPL, usualDBFS}));
    EXPECT_EQ(apply(-5000.0, -10.0), (SpectrogramRanges{usualSPL, usualDBFS}));
    // A ceiling alone says nothing.
    EXPECT_EQ(apply(std::nullopt, -10.0),
              (SpectrogramRanges{.spl = {1.0, 5.0}, .dbfs = {-9.0, -5.0}}));

    SettingsSnapshot both;
    both.spectrogramFloorDB = -80.0;
    both.spectrogramCeilingDB = -10.0;
    both.spectrogramRanges = {.spl = {35.0, 95.0}, .dbfs = {-60.0, 0.0}};
    engine->applySettings(both, true);
    EXPECT_EQ(engine->spectrogramRanges(), both.spectrogramRanges);
}

TEST_F(SettingsTransferTests, theLeqStartsOverOnceWithWhatIsValid) {
    struct Counting final : MeterSettings {
        using MeterSettings::MeterSettings;
    };
    Counting settings(store);
    int starts = 0;
    settings.leqWeighting.setEffect([&](Weighting) { ++starts; });
    settings.leqIntegrationSeconds.setEffect([&](double) { ++starts; });
    settings.configureLeq(Weighting::c, 30.0);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(settings.leqWeighting(), Weighting::c);
    EXPECT_EQ(settings.leqIntegrationSeconds(), 30.0);

    engine->leqIntegrationSeconds.set(2.0);
    measure();
    EXPECT_NEAR(live().leqElapsedFraction, 0.5, 0.01);  // 1 s of 2
    SettingsSnapshot snapshot;
    snapshot.leqIntegrationSeconds = 0.0;
    apply(snapshot);
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000)});
    tick();
    EXPECT_NEAR(live().leqElapsedFraction, 1.0, 0.01);  // nothing valid: it went on
    snapshot.leqWeighting = Weighting::z;
    apply(snapshot);
    EXPECT_EQ(engine->leqWeighting(), Weighting::z);
    EXPECT_EQ(engine->leqIntegrationSeconds(), 2.0);
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 24000)});
    tick();
    EXPECT_NEAR(live().leqElapsedFraction, 0.25, 0.01);
    snapshot.leqWeighting.reset();
    snapshot.leqIntegrationSeconds = 10.0;
    apply(snapshot);
    EXPECT_EQ(engine->leqWeighting(), Weighting::z);
    EXPECT_EQ(engine->leqIntegrationSeconds(), 10.0);
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000)});
    tick();
    EXPECT_NEAR(live().leqElapsedFraction, 0.1, 0.01);
}

TEST_F(SettingsTransferTests, minAndMaxBelongToTheReadingThatIsLoaded) {
    const auto resets = [&](const auto& fill) {
        audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 4800)});
        tick();
        EXPECT_TRUE(minMaxStands());
        SettingsSnapshot snapshot;
        fill(snapshot);
        apply(snapshot);
        return !minMaxStands();
    };
    measure();
    EXPECT_TRUE(resets([](auto& snapshot) { snapshot.metricMode = MetricMode::peak; }));
    EXPECT_TRUE(resets([](auto& snapshot) { snapshot.splWeighting = Weighting::a; }));
    EXPECT_TRUE(resets(
        [](auto& snapshot) { snapshot.splTimeWeighting = TarvaneKit::TimeWeighting::slow; }));
    EXPECT_TRUE(resets([](auto& snapshot) { snapshot.peakWeighting = Weighting::z; }));
    EXPECT_TRUE(
        resets([](auto& snapshot) { snapshot.loudnessReadout = LoudnessMetric::shortTerm; }));
    EXPECT_FALSE(
        resets([](auto& snapshot) { snapshot.loudnessReadout = LoudnessMetric::truePeakMax; }));
    EXPECT_FALSE(resets([](auto& snapshot) { snapshot.viewMode = SpectrumViewMode::line; }));
}

TEST_F(SettingsTransferTests, calibrationsThatCanNotBeLoseTheReference) {
    SettingsSnapshot snapshot;
    snapshot.calibration = profileWithOffset(1000.0);
    snapshot.calibration->micCalFileReferenceSPL = 250.0;
    ChannelConfig channel;
    channel.calibration = snapshot.calibration;
    channel.channelIndex = -1;
    channel.spectrogramRanges.spl = {0.0, 0.0};
    snapshot.channels.emplace().push_back(channel);
    apply(snapshot);
    for (const CalibrationProfile& profile :
         {engine->calibration(), *engine->extraChannels()[0].calibration}) {
        EXPECT_FALSE(profile.reference);
        EXPECT_EQ(profile.micCalFile, snapshot.calibration->micCalFile);
        EXPECT_EQ(profile.micCalFileReferenceSPL, 94.0);
    }
    EXPECT_EQ(engine->extraChannels()[0].channelIndex, 0);
    EXPECT_EQ(engine->extraChannels()[0].spectrogramRanges.spl, SpectrogramRanges{}.spl);
}

TEST_F(SettingsTransferTests, aMicrophonesCurveThatCanNotBeLosesWhatIsWrong) {
    SettingsSnapshot snapshot;
    auto& points = snapshot.calibration.emplace().micCalFile.emplace().points;
    points = {{1000.0, 0.5}, {20.0, 1e300}, {HUGE_VAL, 1.0}, {100.0, -300.0}, {50.0, -300.5}};
    apply(snapshot);
    const std::vector<TarvaneKit::MicCalibrationPoint> expected{{100.0, -300.0}, {1000.0, 0.5}};
    EXPECT_EQ(engine->calibration().micCalFile->points, expected);
}

TEST_F(SettingsTransferTests, strangeListsOfChannelsEndInASoundOne) {
    SettingsSnapshot snapshot;
    ChannelConfig channel;
    channel.id = UUID::main();
    const UUID doubled = UUID::random();
    snapshot.channels = std::vector<ChannelConfig>(10000, channel);
    (*snapshot.channels)[1].id = doubled;
    (*snapshot.channels)[2].id = doubled;
    snapshot.rtaOverlayChannelIDs = std::vector<UUID>(5000, doubled);
    snapshot.rtaOverlayChannelIDs->push_back(UUID::main());
    auto& layouts = snapshot.channelWindowLayouts.emplace();
    auto& overlays = snapshot.levelHistoryOverlayChannelIDs.emplace();
    for (int i = 0; i < 3000; ++i) {
        layouts[UUID::random()].splitFraction = -4.0;
        overlays.push_back(UUID::random());
    }
    apply(snapshot);
    EXPECT_EQ(engine->extraChannels().size(), mostExtraChannels);
    std::set<UUID> ids{UUID::main()};
    for (const ChannelConfig& each : engine->extraChannels()) {
        EXPECT_TRUE(ids.insert(each.id).second);
    }
    EXPECT_EQ(engine->extraChannels()[1].id, doubled);
    EXPECT_EQ(engine->rtaOverlayChannelIDs(), (std::vector{doubled, UUID::main()}));
    EXPECT_EQ(engine->levelHistoryOverlayChannelIDs().size(), mostChannels);
    EXPECT_EQ(engine->channelWindowLayouts().size(), mostChannels);
    for (const auto& [id, layout] : engine->channelWindowLayouts()) {
        EXPECT_EQ(layout.splitFraction, 0.5);
    }
}

TEST_F(SettingsTransferTests, theMainWindowIsNeverLeftEmpty) {
    SettingsSnapshot snapshot;
    snapshot.splMeterPlacement = ModulePlacement::hidden;
    snapshot.rtaPlacement = ModulePlacement::hidden;
    snapshot.spectrogramPlacement = ModulePlacement::hidden;
    snapshot.levelHistoryPlacement = ModulePlacement::hidden;
    apply(snapshot);
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
    EXPECT_EQ(engine->rtaPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(engine->spectrogramPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(engine->levelHistoryPlacement(), ModulePlacement::hidden);
    makeEngine();
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);

    // Nor on the way: the meter leaves before the history comes, and nobody brings it back.
    snapshot.levelHistoryPlacement = ModulePlacement::mainWindow;
    apply(snapshot);
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::hidden);

    // Nor with what a file doesn't mention.
    snapshot = {};
    snapshot.levelHistoryPlacement = ModulePlacement::separateWindow;
    apply(snapshot);
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
}

TEST_F(SettingsTransferTests, withoutAudioAndCalibrationTheInputsStay) {
    const auto b = addChannel("B", "desk", 3);
    engine->calibration.set(profileWithOffset(100.0));
    const auto before = valuesOfSettings(*engine);
    SettingsSnapshot snapshot = engine->captureSettings();
    snapshot.audioInput = {.deviceUID = systemOutputUID, .channelIndex = 1};
    snapshot.calibration = CalibrationProfile{};
    snapshot.mainInputIsDigital = true;
    snapshot.mainInputIsStereo = true;
    snapshot.mainInputRightChannelIndex = 7;
    snapshot.mainInputMeasuresLoudness = true;
    snapshot.channels->push_back({});
    engine->applySettings(snapshot, false);
    EXPECT_EQ(valuesOfSettings(*engine), before);
}

TEST_F(SettingsTransferTests, aChannelIsFoundByItsIDElseByItsName) {
    auto live = addChannel("Left", "desk", 3, 4);
    engine->updateChannel(live.id, [](ChannelConfig& channel) {
        channel.calibration = profileWithOffset(100.0);
        channel.isDigital = false;
        channel.isEnabled = false;
        channel.measuresLoudness = true;
    });
    live = engine->extraChannels()[0];

    ChannelConfig file;
    file.name = "Left";
    file.deviceUID = "mic";
    file.channelIndex = 9;
    file.rightChannelIndex = 10;
    file.color = {0.1, 0.2, 0.3, 1.0};
    file.ringOutEnabled = true;
    file.spectrogramRanges = {.spl = {20.0, 90.0}, .dbfs = {-80.0, -80.0}};
    file.display.emplace().viewMode = SpectrumViewMode::line;
    file.calibration = profileWithOffset(50.0);
    SettingsSnapshot snapshot;
    snapshot.channels = {file};
    engine->applySettings(snapshot, false);

    ChannelConfig expected = live;
    expected.color = file.color;
    expected.ringOutEnabled = true;
    expected.spectrogramRanges.spl = file.spectrogramRanges.spl;  // the other can't be
    expected.display = file.display;
    EXPECT_EQ(engine->extraChannels(), std::vector{expected});

    // By its id it takes another name too, and follows the main input if the file's does.
    file.id = live.id;
    file.name = "Nave";
    file.display.reset();
    snapshot.channels = {file};
    engine->applySettings(snapshot, false);
    expected.name = "Nave";
    expected.display.reset();
    EXPECT_EQ(engine->extraChannels(), std::vector{expected});
}

TEST_F(SettingsTransferTests, channelsOfOneNameAreMatchedInTheirOrderAndEachOnce) {
    const auto first = addChannel("Mic", "desk", 0);
    const auto other = addChannel("Other", "desk", 1);
    const auto second = addChannel("Mic", "desk", 2);
    ChannelConfig a;
    a.name = "Mic";
    a.color = {0.1, 0.0, 0.0, 1.0};
    ChannelConfig b = a;
    b.id = UUID::random();
    b.color = {0.2, 0.0, 0.0, 1.0};
    ChannelConfig tooMany = b;
    tooMany.id = UUID::random();
    tooMany.color = {0.3, 0.0, 0.0, 1.0};
    SettingsSnapshot snapshot;
    snapshot.channels = {a, b, tooMany};
    engine->applySettings(snapshot, false);
    const auto& channels = engine->extraChannels();
    ASSERT_EQ(channels.size(), 3U);
    EXPECT_EQ(channels[0].id, first.id);
    EXPECT_EQ(channels[0].color, a.color);
    EXPECT_EQ(channels[1], other);
    EXPECT_EQ(channels[2].id, second.id);
    EXPECT_EQ(channels[2].color, b.color);
}

TEST_F(SettingsTransferTests, whatIsBeyondTheLimitOfChannelsMatchesNone) {
    const auto live = addChannel("Mic", "desk", 0);
    ChannelConfig other;
    other.name = "Other";
    SettingsSnapshot snapshot;
    snapshot.channels = std::vector<ChannelConfig>(mostExtraChannels, other);
    snapshot.channels->push_back(live);
    snapshot.channels->back().color = {0.1, 0.0, 0.0, 1.0};
    engine->applySettings(snapshot, false);
    EXPECT_EQ(engine->extraChannels(), std::vector{live});
    snapshot.channels->erase(snapshot.channels->begin());
    engine->applySettings(snapshot, false);
    EXPECT_EQ(engine->extraChannels(), std::vector{snapshot.channels->back()});
}

// In the file's order, so that a name may take the channel that a later id would have had.
TEST_F(SettingsTransferTests, theFilesOrderDecidesWhoIsMatchedFirst) {
    const auto live = addChannel("Mic", "desk", 0);
    ChannelConfig byName;
    byName.name = "Mic";
    byName.color = {0.1, 0.0, 0.0, 1.0};
    ChannelConfig byID;
    byID.id = live.id;
    byID.name = "Renamed";
    SettingsSnapshot snapshot;
    snapshot.channels = {byName, byID};
    engine->applySettings(snapshot, false);
    EXPECT_EQ(engine->extraChannels()[0].name, "Mic");
    EXPECT_EQ(engine->extraChannels()[0].color, byName.color);
}

TEST_F(SettingsTransferTests, aRunGoesOnWithTheInputsOfTheFile) {
    start();
    SettingsSnapshot snapshot;
    snapshot.audioInput = {.deviceUID = "desk", .channelIndex = 3};
    ChannelConfig channel;
    channel.deviceUID = "pair";
    snapshot.channels = {channel};
    apply(snapshot);
    EXPECT_TRUE(engine->isStarting());
    awaitStart();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    EXPECT_EQ(audio.madeUIDs(), (std::vector<std::string>{"", "desk", "pair"}));
    EXPECT_EQ(audio.runningCount(), 2);
    EXPECT_EQ(engine->meteredDevice(), "Desk");
    EXPECT_TRUE(engine->meterChannel(channel.id).hasProcessor());

    apply(snapshot);  // the same inputs: the session goes on
    EXPECT_FALSE(engine->isStarting());
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(audio.madeUIDs().size(), 3U);
}

TEST_F(SettingsTransferTests, anOfferToRestartIsTakenUpByALoad) {
    start();
    engine->selectedDeviceUID.set("desk");
    ASSERT_TRUE(engine->channelSourcesChangedWhileRunning());
    apply({});
    awaitStart();
    EXPECT_EQ(engine->meteredDevice(), "Desk");
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(SettingsTransferTests, aStartUnderWayEndsWithTheInputsOfTheFile) {
    audio.behaviour("").opensSlowly = true;
    engine->start();
    waitUntil([&] { return audio.madeCount() == 1; });
    SettingsSnapshot snapshot;
    snapshot.audioInput = {.deviceUID = "desk", .channelIndex = 3};
    apply(snapshot);
    EXPECT_TRUE(engine->isStarting());
    awaitStart();
    settle();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(engine->meteredDevice(), "Desk");
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    EXPECT_EQ(audio.runningCount(), 1);
}

TEST_F(SettingsTransferTests, aStartOfTheSameInputsGoesOn) {
    audio.behaviour("").opensSlowly = true;
    engine->start();
    waitUntil([&] { return audio.madeCount() == 1; });
    apply(engine->captureSettings());
    awaitStart();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_EQ(audio.madeCount(), 1);
}

TEST_F(SettingsTransferTests, aLoadStartsNothingThatStands) {
    SettingsSnapshot snapshot;
    snapshot.audioInput = {.deviceUID = "desk", .channelIndex = 3};
    apply(snapshot);
    EXPECT_FALSE(engine->isStarting());
    EXPECT_FALSE(engine->isRunning());
}

}  // namespace SettingsTransferTests
}  // namespace TarvaneApp
