// What survives a restart, and what a damaged store costs.

#include <rapidcheck.h>

#include <cmath>
#include <limits>
#include <set>

#include "Records/ExtraChannels.h"
#include "Settings/Persistence.h"
#include "Support/RecordGenerators.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Engine/EverySetting.h"
#include "TarvaneApp/Engine/PossibleSettings.h"

namespace TarvaneApp {
namespace MeterSettingsTests {
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneTests::forEachSetting;
using TarvaneTests::valuesOfSettings;

constexpr const char* mainID = "6A1D0000-0000-4000-8000-000000000001";
constexpr const char* xCurveName = "X-Curve (SMPTE ST202 / ISO 2969)";

enum class Form { text, number, json };

struct StoredDefault {
    Form form;
    /// Empty where the default is absent.
    std::string value;
};

// What a first launch would store, written out by hand.
const std::map<std::string, StoredDefault>& storedDefaults() {
    static const std::string green = R"({"red":0.2,"green":0.8,"blue":0.3,"alpha":1.0})";
    static const std::string yellow = R"({"red":0.95,"green":0.8,"blue":0.15,"alpha":1.0})";
    static const std::string red = R"({"red":0.9,"green":0.2,"blue":0.2,"alpha":1.0})";
    const auto trafficLight = [&](const std::string& name, const std::string& first,
                                  const std::string& second) {
        return R"({"name":")" + name + R"(","bands":[{"thresholdDB":)" + first + R"(,"color":)" +
               red + R"(},{"thresholdDB":)" + second + R"(,"color":)" + yellow +
               R"(}],"belowAllColor":)" + green + "}";
    };
    static const std::map<std::string, StoredDefault> defaults{
        {"deviceUID", {Form::text, ""}},
        {"channelIndex", {Form::json, "0"}},
        {"octaveFraction", {Form::json, "3"}},
        {"viewMode", {Form::json, R"("Both")"}},
        {"rtaColor", {Form::json, R"({"red":0.55,"green":1.0,"blue":0.35,"alpha":0.95})"}},
        {"rtaPeakColor", {Form::json, R"({"red":1.0,"green":0.6,"blue":0.2,"alpha":1.0})"}},
        {"showPeakHold", {Form::json, "true"}},
        {"rtaTimeWeighting", {Form::json, R"("None")"}},
        {"targetCurveName", {Form::text, xCurveName}},
        {"targetCurveReferenceDB", {Form::number, "85"}},
        {"targetCurveReferenceDBFS", {Form::number, "-20"}},
        {"octaveNormalizedSpectrumDisplay", {Form::json, "true"}},
        {"metricMode", {Form::json, R"("SPL")"}},
        {"splWeighting", {Form::json, R"("A")"}},
        {"splTimeWeighting", {Form::json, R"("Fast")"}},
        {"peakWeighting", {Form::json, R"("C")"}},
        {"leqWeighting", {Form::json, R"("A")"}},
        {"leqIntegrationSeconds", {Form::number, "60"}},
        {"trafficLightConfig", {Form::json, trafficLight("Default", "100.0", "85.0")}},
        {"trafficLightConfigDBFS", {Form::json, trafficLight("Default dBFS", "-3.0", "-12.0")}},
        {"calibration", {Form::json, R"({"name":"Default","micCalFileReferenceSPL":94.0})"}},
        {"spectrogramRanges",
         {Form::json, R"({"spl":{"floorDB":30.0,"ceilingDB":110.0},)"
                      R"("dbfs":{"floorDB":-100.0,"ceilingDB":-20.0}})"}},
        {"spectrogramTimeSpanSeconds", {Form::number, "2"}},
        {"spectrogramSliceHeightMultiplier", {Form::number, "1"}},
        {"spectrogramColorPresets", {Form::json, "[]"}},
        {"panelLayout", {Form::json, R"("Both")"}},
        {"panelSplitFraction", {Form::number, "0.5"}},
        {"ringOutEnabled", {Form::json, "true"}},
        {"ringOutSensitivity", {Form::json, R"("normal")"}},
        {"splMeterPlacement", {Form::json, R"("Main Window")"}},
        {"rtaPlacement", {Form::json, R"("Main Window")"}},
        {"spectrogramPlacement", {Form::json, R"("Main Window")"}},
        {"graphOrientation", {Form::json, R"("Stacked")"}},
        {"splReadoutShowsClock", {Form::json, "false"}},
        {"splReadoutShowsDBFS", {Form::json, "false"}},
        {"levelHistoryPlacement", {Form::json, R"("Main Window")"}},
        {"levelHistoryZoom", {Form::json, R"("Session")"}},
        {"graphOrder", {Form::json, R"("RTA First")"}},
        {"levelHistoryPosition", {Form::json, R"("Above Graphs")"}},
        {"levelHistoryShowsMomentary", {Form::json, "false"}},
        {"splMeterShowsLevelBar", {Form::json, "true"}},
        {"mainInputIsDigital", {Form::json, "false"}},
        {"extraChannels", {Form::json, "[]"}},
        {"splMeterChannelID", {Form::text, mainID}},
        {"rtaChannelID", {Form::text, mainID}},
        {"spectrogramChannelID", {Form::text, mainID}},
        {"rtaOverlayChannelIDs", {Form::json, "[]"}},
        {"mainInputIsStereo", {Form::json, "false"}},
        {"mainInputRightChannelIndex", {Form::json, "1"}},
        {"levelHistoryChannelID", {Form::text, ""}},
        {"levelHistoryOverlayChannelIDs", {Form::json, "[]"}},
        {"channelWindowLayouts", {Form::json, "{}"}},
        {"mainInputMeasuresLoudness", {Form::json, "false"}},
        {"loudnessReadout", {Form::json, R"("shortTerm")"}},
        {"loudnessTarget",
         {Form::json, R"json({"name":"EBU R128 (−23 LUFS)","targetLUFS":-23.0,)json"
                      R"json("toleranceLU":1.0,"truePeakCeilingDBTP":-1.0})json"}},
        {"loudnessColors",
         {Form::json, R"({"aboveTarget":)" + red + R"(,"onTarget":)" + green +
                          R"(,"belowTarget":)" + yellow + R"(,"truePeakOver":)" + red +
                          R"(,"truePeakWithin":)" + green + "}"}},
    };
    return defaults;
}

// Keys that are no setting of the engine: two that are only read, two of the profiles.
const std::set<std::string> keysOfOthers{"spectrogramFloorDB", "spectrogramCeilingDB",
                                         "activeProfileName", "profilesIncludeAudioAndCalibration"};

class MeterSettingsTests : public TarvaneTests::EngineFixture {
  protected:
    std::vector<std::string> allKeys() {
        std::vector<std::string> keys(keysOfOthers.begin(), keysOfOthers.end());
        forEachSetting(*engine, [&](const std::string& key, auto&) { keys.push_back(key); });
        return keys;
    }
    /// Gives every setting a value of any kind that it may hold.
    void setEverything() {
        using TarvaneKit::Testing::drawnValue;
        forEachSetting(*engine, [](const std::string& key, auto& setting) {
            using Value = std::remove_cvref_t<decltype(setting())>;
            setting.set(TarvaneTests::possible(key, drawnValue<Value>()));
        });
        // What no curve becomes at a restart is told on its own.
        engine->selectedTargetCurveName.set(drawnValue<std::string>());
    }
    void putGarbage(const std::string& key) {
        const std::string name = Persistence::storedName(key);
        const auto default_ = storedDefaults().find(key);
        const bool isText =
            default_ != storedDefaults().end() && default_->second.form == Form::text;
        switch (*rc::gen::inRange(0, 3)) {
            case 0:  // another form than its own
                if (isText) {
                    store.setNumber(name, 1.0);
                } else {
                    store.setText(name, "garbage");
                }
                break;
            case 1:  // cut short
                store.setData(name, "[{\"id\":");
                break;
            default:  // of another type
                store.setData(name, "[[\"another\"]]");
        }
    }
};

TEST_F(MeterSettingsTests, fiftySevenSettingsHaveAKeyEachAndFourKeysAreOfOthers) {
    std::set<std::string> declared;
    for (const auto& settings : {engine->channelSettings(), engine->windowSettings()}) {
        for (const SettingBase* setting : settings) {
            EXPECT_TRUE(declared.emplace(setting->key()).second) << setting->key();
        }
    }
    std::set<std::string> visited;
    forEachSetting(*engine, [&](const std::string& key, auto& setting) {
        EXPECT_EQ(setting.key(), key);
        EXPECT_TRUE(visited.insert(key).second);
        EXPECT_FALSE(keysOfOthers.contains(key));
    });
    EXPECT_EQ(declared, visited);
    EXPECT_EQ(declared.size() + keysOfOthers.size(), 61U);
}

TEST_F(MeterSettingsTests, aFirstLaunchGivesTheDefaultsAndEachIsStoredInItsForm) {
    forEachSetting(*engine, [&](const std::string& key, auto& setting) {
        if (key == "spectrogramColorStops") {
            return;  // its stops have identifiers of their own
        }
        store.clear();
        setting.set(setting());
        const std::string name = Persistence::storedName(key);
        SCOPED_TRACE(name);
        EXPECT_TRUE(store.isFlushed());
        const auto& [form, value] = storedDefaults().at(key);
        if (value.empty()) {
            EXPECT_TRUE(store.keys().empty());
            return;
        }
        EXPECT_EQ(store.keys(), std::vector{name});
        switch (form) {
            case Form::text:
                EXPECT_EQ(store.text(name), value);
                break;
            case Form::number:
                EXPECT_EQ(store.number(name), std::stod(value));
                break;
            case Form::json:
                EXPECT_EQ(store.data(name), value);
        }
    });
}

TEST_F(MeterSettingsTests, theDefaultRampRunsFromNearBlackToWhite) {
    const auto& stops = engine->spectrogramColorStops();
    ASSERT_EQ(stops.size(), 9U);
    EXPECT_EQ(stops.front().position, 0.0);
    EXPECT_EQ(stops.front().color, (TarvaneKit::RGBAColor{5 / 255.0, 5 / 255.0, 12 / 255.0, 1.0}));
    EXPECT_EQ(stops[1].position, 0.378);
    EXPECT_EQ(stops[4].color, (TarvaneKit::RGBAColor{0.0, 183 / 255.0, 148 / 255.0, 1.0}));
    EXPECT_EQ(stops.back().position, 1.0);
    EXPECT_EQ(stops.back().color, (TarvaneKit::RGBAColor{1.0, 1.0, 1.0, 1.0}));
    engine->spectrogramColorStops.set(stops);
    makeEngine();
    EXPECT_EQ(engine->spectrogramColorStops(), defaultSpectrogramColorStops());
}

TEST_F(MeterSettingsTests, everySettingSurvivesARestart) {
    EXPECT_TRUE(rc::check([this] {
        store.clear();
        makeEngine();
        setEverything();
        const auto before = valuesOfSettings(*engine);
        makeEngine();
        RC_ASSERT(valuesOfSettings(*engine) == before);
    }));
}

TEST_F(MeterSettingsTests, aBrokenValueCostsThatValueAlone) {
    store.clear();
    makeEngine();
    const auto defaults = valuesOfSettings(*engine);
    EXPECT_TRUE(rc::check([this, &defaults] {
        store.clear();
        makeEngine();
        setEverything();
        auto expected = valuesOfSettings(*engine);
        const std::string key = *rc::gen::elementOf(allKeys());
        putGarbage(key);
        makeEngine();
        if (!keysOfOthers.contains(key)) {
            expected[key] = defaults.at(key);
        }
        RC_ASSERT(valuesOfSettings(*engine) == expected);
    }));
}

TEST_F(MeterSettingsTests, aBrokenValueStaysStoredUntilItsNextWrite) {
    store.setData("Tarvane.rtaTimeWeighting", R"("Forever")");
    makeEngine();
    EXPECT_EQ(engine->rtaTimeWeighting(), TimeWeighting::none);
    EXPECT_EQ(store.data("Tarvane.rtaTimeWeighting"), R"("Forever")");
    engine->rtaTimeWeighting.set(TimeWeighting::slow);
    EXPECT_EQ(store.data("Tarvane.rtaTimeWeighting"), R"("Slow")");
}

TEST_F(MeterSettingsTests, aBooleanThatIsNoJSONCountsAsAbsent) {
    store.setData("Tarvane.ringOutEnabled", "yes");
    store.setData("Tarvane.splReadoutShowsDBFS", "yes");
    makeEngine();
    EXPECT_TRUE(engine->ringOutEnabled());
    EXPECT_FALSE(engine->splReadoutShowsDBFS());
}

TEST_F(MeterSettingsTests, aStoredZeroIsNoAbsence) {
    store.setNumber("Tarvane.targetCurveReferenceDB", 0.0);
    makeEngine();
    EXPECT_EQ(engine->targetCurveReferenceDB(), 0.0);
}

TEST_F(MeterSettingsTests, noTargetCurveIsNotStoredSoThatARestartShowsTheXCurve) {
    engine->selectedTargetCurveName.set("Flat");
    engine->selectedTargetCurveName.set(std::nullopt);
    EXPECT_FALSE(store.contains("Tarvane.targetCurveName"));
    makeEngine();
    EXPECT_EQ(engine->selectedTargetCurveName(), xCurveName);
}

TEST_F(MeterSettingsTests, anIdentifierThatDoesNotParseGivesWayToTheMainInputs) {
    for (const char* key :
         {"splMeterChannelID", "rtaChannelID", "spectrogramChannelID", "levelHistoryChannelID"}) {
        store.setText(std::string("Tarvane.") + key, "6A1D0000-0000-4000-8000-00000000000");
    }
    makeEngine();
    EXPECT_EQ(engine->splMeterChannelID(), UUID::main());
    EXPECT_EQ(engine->rtaChannelID(), UUID::main());
    EXPECT_EQ(engine->spectrogramChannelID(), UUID::main());
    EXPECT_FALSE(engine->levelHistoryChannelID());
}

TEST_F(MeterSettingsTests, theOldSpectrogramRangeIsTakenOver) {
    const auto migrated = [&](double floorDB, double ceilingDB) {
        store.setNumber("Tarvane.spectrogramFloorDB", floorDB);
        store.setNumber("Tarvane.spectrogramCeilingDB", ceilingDB);
        makeEngine();
        return engine->spectrogramRanges();
    };
    const SpectrogramRanges defaults;
    EXPECT_EQ(migrated(-80, -10), (SpectrogramRanges{.spl = {30, 110}, .dbfs = {-80, -10}}));
    EXPECT_EQ(migrated(40, 100), (SpectrogramRanges{.spl = {40, 100}, .dbfs = {-100, -20}}));
    EXPECT_EQ(migrated(-10, -9), defaults);
    EXPECT_EQ(migrated(0, 20), (SpectrogramRanges{.spl = {30, 110}, .dbfs = {0, 20}}));
    EXPECT_EQ(migrated(std::nan(""), 100), defaults);
    store.remove("Tarvane.spectrogramFloorDB");
    makeEngine();
    EXPECT_EQ(engine->spectrogramRanges(), defaults);
}

TEST_F(MeterSettingsTests, theOldSpectrogramRangeStaysAndAStoredPairWins) {
    store.setNumber("Tarvane.spectrogramFloorDB", 40);
    store.setNumber("Tarvane.spectrogramCeilingDB", 100);
    makeEngine();
    engine->spectrogramRanges.set({.spl = {20, 90}, .dbfs = {-60, 0}});
    makeEngine();
    EXPECT_EQ(engine->spectrogramRanges(), (SpectrogramRanges{.spl = {20, 90}, .dbfs = {-60, 0}}));
    EXPECT_EQ(store.number("Tarvane.spectrogramFloorDB"), 40.0);
    EXPECT_EQ(store.number("Tarvane.spectrogramCeilingDB"), 100.0);
}

TEST_F(MeterSettingsTests, calibrationsOfExtraChannelsAreTakenAsStored) {
    auto channel = addChannel("B", "desk", 0);
    channel.calibration.emplace();
    channel.calibration->micCalFileReferenceSPL = 250.0;
    engine->extraChannels.set({channel});
    makeEngine();
    EXPECT_EQ(engine->extraChannels()[0].calibration->micCalFileReferenceSPL, 250.0);
}

TEST_F(MeterSettingsTests, aStoredNumberThatCannotBeGivesWayToTheDefault) {
    store.clear();
    makeEngine();
    const auto defaults = valuesOfSettings(*engine);
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e308, -1.0, 0.0}) {
        SCOPED_TRACE(number);
        store.clear();
        for (const char* key : {"leqIntegrationSeconds", "spectrogramTimeSpanSeconds",
                                "spectrogramSliceHeightMultiplier", "panelSplitFraction"}) {
            store.setNumber(Persistence::storedName(key), number);
        }
        if (!std::isfinite(number) || number > 1.0) {
            store.setNumber("Tarvane.targetCurveReferenceDB", number);
            store.setNumber("Tarvane.targetCurveReferenceDBFS", number);
        }
        makeEngine();
        EXPECT_EQ(valuesOfSettings(*engine), defaults);
    }
    for (const char* index : {"-1", "2147483647", "-2147483648"}) {
        store.clear();
        store.setData("Tarvane.channelIndex", index);
        store.setData("Tarvane.mainInputRightChannelIndex", index);
        makeEngine();
        EXPECT_EQ(valuesOfSettings(*engine), defaults) << index;
    }
    store.clear();
    const std::string color = R"("color":{"red":0,"green":0,"blue":0,"alpha":1})";
    for (const char* key : {"trafficLightConfig", "trafficLightConfigDBFS"}) {
        store.setData(Persistence::storedName(key),
                      R"({"name":"","bands":[{"thresholdDB":1e308,)" + color +
                          R"(}],"belowAllColor":{"red":0,"green":0,"blue":0,"alpha":1}})");
    }
    store.setData("Tarvane.loudnessTarget",
                  R"({"name":"","targetLUFS":-23,"toleranceLU":-1,"truePeakCeilingDBTP":-1})");
    store.setData(
        "Tarvane.spectrogramRanges",
        R"({"spl":{"floorDB":110,"ceilingDB":30},"dbfs":{"floorDB":0,"ceilingDB":1e308}})");
    makeEngine();
    EXPECT_EQ(valuesOfSettings(*engine), defaults);
}

TEST_F(MeterSettingsTests, aStoredChannelKeepsAllButTheNumbersThatCannotBe) {
    store.setData("Tarvane.extraChannels",
                  R"([{"id":"11111111-2222-4333-8444-555555555555","name":"Stage",)"
                  R"("isStereo":true,"channelIndex":2147483647,"rightChannelIndex":-9,)"
                  R"("spectrogramRanges":{"spl":{"floorDB":9,"ceilingDB":9}},)"
                  R"("display":{"targetCurveReferenceDB":1e308}}])");
    store.setData("Tarvane.channelWindowLayouts",
                  R"({"11111111-2222-4333-8444-555555555555":{"showsRTA":false,)"
                  R"("splitFraction":1e308}})");
    makeEngine();
    ASSERT_EQ(engine->extraChannels().size(), 1U);
    const ChannelConfig& channel = engine->extraChannels().front();
    EXPECT_EQ(channel.name, "Stage");
    EXPECT_EQ(channel.channelIndex, 0);
    EXPECT_EQ(channel.rightChannelIndex, 1);
    EXPECT_EQ(channel.spectrogramRanges, SpectrogramRanges{});
    EXPECT_EQ(channel.display->targetCurveReferenceDB, 85.0);
    EXPECT_EQ(engine->windowLayout(channel.id).splitFraction, 0.5);
    EXPECT_FALSE(engine->windowLayout(channel.id).showsRTA);
}

// Two channels under one id would be one processor, analysed twice at once.
TEST_F(MeterSettingsTests, storedChannelsUnderOneIDBecomeChannelsOfTheirOwn) {
    store.setData("Tarvane.extraChannels",
                  R"([{"id":"11111111-2222-4333-8444-555555555555","name":"A"},)"
                  R"({"id":"11111111-2222-4333-8444-555555555555","name":"B"},)"
                  R"({"id":"6A1D0000-0000-4000-8000-000000000001","name":"C"}])");
    makeEngine();
    const auto& channels = engine->extraChannels();
    ASSERT_EQ(channels.size(), 3U);
    EXPECT_EQ(channels[0].id.text(), "11111111-2222-4333-8444-555555555555");
    EXPECT_EQ((std::set{channels[0].id, channels[1].id, channels[2].id, UUID::main()}).size(), 4U);
    EXPECT_EQ(channels[1].name, "B");
    EXPECT_EQ(channels[2].name, "C");
    start();
    ASSERT_TRUE(audio.feed("", {TarvaneTests::sine(1000.0, 0.5, 48000)}));
    tick();
    for (const ChannelConfig& channel : channels) {
        EXPECT_TRUE(std::isfinite(live(channel.id).currentSPLValueDB)) << channel.name;
    }
}

TEST_F(MeterSettingsTests, assignedChannelsUnderOneIDBecomeChannelsOfTheirOwn) {
    const ChannelConfig channel = addChannel("A", "desk", 0);
    engine->extraChannels.set({channel, channel});
    ASSERT_EQ(engine->extraChannels().size(), 2U);
    EXPECT_EQ(engine->extraChannels()[0].id, channel.id);
    EXPECT_NE(engine->extraChannels()[1].id, channel.id);
    const auto assigned = engine->extraChannels();
    makeEngine();
    EXPECT_EQ(engine->extraChannels(), assigned);
}

TEST_F(MeterSettingsTests, channelsBeyondTheLimitAreLeftOut) {
    std::vector<ChannelConfig> channels(mostExtraChannels + 5);
    store.setData("Tarvane.extraChannels", *TarvaneKit::encode(channels));
    makeEngine();
    channels.resize(mostExtraChannels);
    EXPECT_EQ(engine->extraChannels(), channels);
    channels.emplace_back();
    engine->extraChannels.set(channels);
    EXPECT_EQ(engine->extraChannels().size(), mostExtraChannels);
}

// What is taken as it is stored, and what comes by assignment, overflows nowhere.
TEST_F(MeterSettingsTests, absurdNumbersStopNothing) {
    engine->leqIntegrationSeconds.set(std::nan(""));
    engine->mainInputIsStereo.set(true);
    engine->mainInputRightChannelIndex.set(std::numeric_limits<int>::max());
    ChannelConfig channel = addChannel("B", std::nullopt, std::numeric_limits<int>::max() - 1);
    channel.calibration.emplace();
    channel.isDigital = false;
    channel.calibration->reference.emplace().offsetDB = 1e308;
    engine->extraChannels.set({channel});
    EXPECT_EQ(engine->inputDescription(engine->info(channel)), "Default Input");
    channel.deviceUID = "desk";
    EXPECT_EQ(engine->inputDescription(engine->info(channel)), "Desk (channel 2147483647)");
    channel.channelIndex = std::numeric_limits<int>::max();
    EXPECT_EQ(engine->inputDescription(engine->info(channel)), "Desk (channel 2147483648)");
    start();
    ASSERT_TRUE(audio.feed("", {TarvaneTests::sine(1000.0, 0.5, 48000)}));
    tick();
    EXPECT_TRUE(std::isfinite(live().currentSPLValueDB));
    EXPECT_EQ(live().leqElapsedFraction, 0.0);
}

TEST_F(MeterSettingsTests, loadingRunsNoEffect) {
    store.setText("Tarvane.deviceUID", TarvaneKit::systemOutputUID);
    store.setData("Tarvane.channelIndex", "7");
    makeEngine();
    EXPECT_EQ(engine->selectedChannelIndex(), 7);
    EXPECT_FALSE(engine->mainInputIsStereo());
    EXPECT_FALSE(store.contains("Tarvane.mainInputIsDigital"));
}

}  // namespace MeterSettingsTests
}  // namespace TarvaneApp
