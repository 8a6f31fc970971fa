#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace SettingEffectsTests {

using TarvaneKit::OctaveFraction;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;

class SettingEffectsTests : public TarvaneTests::EngineFixture {};

TEST_F(SettingEffectsTests, theDisplayOfTheMainInputIsMadeOfTheEnginesFields) {
    engine->splReadoutShowsDBFS.set(true);
    engine->viewMode.set(SpectrumViewMode::line);
    engine->octaveFraction.set(OctaveFraction::twelfthOctave);
    engine->octaveNormalizedSpectrumDisplay.set(false);
    engine->showPeakHold.set(false);
    engine->rtaPeakColor.set({0.1, 0.2, 0.3, 0.4});
    engine->ringOutSensitivity.set(TarvaneKit::RingOutSensitivity::high);
    engine->selectedTargetCurveName.set("Flat");
    engine->targetCurveReferenceDB.set(80.0);
    engine->targetCurveReferenceDBFS.set(-30.0);
    engine->metricMode.set(MetricMode::leq);
    engine->splWeighting.set(TarvaneKit::Weighting::z);
    engine->splTimeWeighting.set(TarvaneKit::TimeWeighting::slow);
    engine->peakWeighting.set(TarvaneKit::Weighting::a);
    const ChannelDisplaySettings expected{
        .showsDBFS = true,
        .viewMode = SpectrumViewMode::line,
        .octaveFraction = OctaveFraction::twelfthOctave,
        .octaveNormalized = false,
        .showsPeakHold = false,
        .peakHoldColor = {0.1, 0.2, 0.3, 0.4},
        .ringOutSensitivity = TarvaneKit::RingOutSensitivity::high,
        .targetCurveName = "Flat",
        .targetCurveReferenceDB = 80.0,
        .targetCurveReferenceDBFS = -30.0,
        .metricMode = MetricMode::leq,
        .splWeighting = TarvaneKit::Weighting::z,
        .splTimeWeighting = TarvaneKit::TimeWeighting::slow,
        .peakWeighting = TarvaneKit::Weighting::a};
    EXPECT_EQ(engine->display(UUID::main()), expected);
    const auto follower = addChannel("B", "desk", 0);
    EXPECT_EQ(engine->display(follower.id), expected);

    engine->updateDisplay(UUID::main(), [](auto& display) { display = ChannelDisplaySettings{}; });
    EXPECT_EQ(engine->display(UUID::main()), ChannelDisplaySettings{});
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::both);
    EXPECT_EQ(engine->targetCurveReferenceDB(), 85.0);
    // Its metric was among what changed: the follower is pinned to what it showed.
    EXPECT_EQ(engine->display(follower.id), expected);
}

TEST_F(SettingEffectsTests, anEditThatChangesNothingDoesNothing) {
    const auto follower = addChannel("B", "desk", 0);
    store.clear();
    engine->updateDisplay(UUID::main(), [](auto&) {});
    engine->updateDisplay(follower.id, [](auto&) {});
    engine->updateDisplay(UUID::random(), [](auto& display) { display.showsDBFS = true; });
    EXPECT_TRUE(store.keys().empty());
    EXPECT_FALSE(engine->extraChannels()[0].display);
}

TEST_F(SettingEffectsTests, theSplitStaysWhereBothGraphsCanBeRead) {
    engine->panelSplitFraction.set(0.05);
    EXPECT_EQ(engine->panelSplitFraction(), 0.15);
    engine->panelSplitFraction.set(7.0);
    EXPECT_EQ(engine->panelSplitFraction(), 0.85);
    EXPECT_EQ(store.number("Tarvane.panelSplitFraction"), 0.85);
    engine->panelSplitFraction.set(std::nan(""));
    EXPECT_EQ(engine->panelSplitFraction(), 0.15);
    engine->panelSplitFraction.set(0.4);
    EXPECT_EQ(engine->panelSplitFraction(), 0.4);
}

TEST_F(SettingEffectsTests, theLastModuleThatLeavesTheMainWindowBringsTheMeterBack) {
    engine->splMeterPlacement.set(ModulePlacement::hidden);
    engine->rtaPlacement.set(ModulePlacement::separateWindow);
    engine->spectrogramPlacement.set(ModulePlacement::hidden);
    EXPECT_FALSE(engine->mainWindowShowsGraphArea());
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::hidden);
    engine->levelHistoryPlacement.set(ModulePlacement::separateWindow);
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
    EXPECT_EQ(engine->levelHistoryPlacement(), ModulePlacement::separateWindow);
    EXPECT_EQ(store.data("Tarvane.splMeterPlacement"), R"("Main Window")");
    // As the only one it can't leave at all.
    engine->splMeterPlacement.set(ModulePlacement::separateWindow);
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
}

TEST_F(SettingEffectsTests, aStoredLayoutThatLeavesTheMainWindowEmptyBringsTheMeterBack) {
    for (const std::string module : {"splMeter", "rta", "spectrogram", "levelHistory"}) {
        store.setData("Tarvane." + module + "Placement", R"("Separate Window")");
    }
    makeEngine();
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
    EXPECT_EQ(engine->rtaPlacement(), ModulePlacement::separateWindow);
    EXPECT_EQ(engine->levelHistoryPlacement(), ModulePlacement::separateWindow);
}

TEST_F(SettingEffectsTests, aPresetSetsAllFourPlacementsAndSavesThem) {
    using enum ModulePlacement;
    using Placements = std::array<ModulePlacement, 4>;
    const std::map<LayoutPreset, Placements> expected{
        {LayoutPreset::allInMainWindow, {mainWindow, mainWindow, mainWindow, mainWindow}},
        {LayoutPreset::splMeterOnly, {mainWindow, hidden, hidden, hidden}},
        {LayoutPreset::levelHistoryOnly, {hidden, hidden, hidden, mainWindow}},
        {LayoutPreset::splInSeparateWindow, {separateWindow, mainWindow, mainWindow, mainWindow}},
        {LayoutPreset::rtaInSeparateWindow, {mainWindow, separateWindow, mainWindow, mainWindow}},
        {LayoutPreset::spectrogramInSeparateWindow,
         {mainWindow, mainWindow, separateWindow, mainWindow}}};
    // From each to each: on the way from one "only" to the other the main window is empty.
    for (const auto& [from, ignored] : expected) {
        for (const auto& [preset, placements] : expected) {
            engine->applyLayoutPreset(from);
            engine->applyLayoutPreset(preset);
            makeEngine();
            EXPECT_EQ((Placements{engine->splMeterPlacement(), engine->rtaPlacement(),
                                  engine->spectrogramPlacement(), engine->levelHistoryPlacement()}),
                      placements)
                << TarvaneKit::rawValue(from) << " to " << TarvaneKit::rawValue(preset);
        }
    }
}

TEST_F(SettingEffectsTests, aChannelsWindowWithoutALayoutShowsEverything) {
    const auto id = addChannel("B", "desk", 0).id;
    const ChannelWindowLayout layout = engine->windowLayout(id);
    EXPECT_EQ(layout.visibleModuleCount(), 4);
    EXPECT_FALSE(layout.graphOrientation || layout.graphOrder || layout.levelHistoryPosition);
    EXPECT_EQ(layout.panelLayout, PanelLayout::both);
    EXPECT_EQ(layout.splitFraction, 0.5);
    ChannelWindowLayout own;
    own.showsRTA = false;
    own.showsSpectrogram = false;
    engine->channelWindowLayouts.set({{id, own}});
    EXPECT_EQ(engine->windowLayout(id).visibleModuleCount(), 2);
}

TEST_F(SettingEffectsTests, aChannelsWindowLayoutIsEditedAndReset) {
    const auto id = addChannel("B", "desk", 0).id;
    const auto other = addChannel("C", "desk", 1).id;
    engine->updateWindowLayout(id, [](auto& layout) { layout.showsRTA = false; });
    engine->updateWindowLayout(id, [](auto& layout) { layout.splitFraction = 0.3; });
    EXPECT_FALSE(engine->windowLayout(id).showsRTA);
    EXPECT_EQ(engine->windowLayout(id).splitFraction, 0.3);
    EXPECT_EQ(engine->windowLayout(other), ChannelWindowLayout{});
    EXPECT_EQ(engine->channelWindowLayouts().size(), 1U);
    makeEngine();
    EXPECT_FALSE(engine->windowLayout(id).showsRTA);
    engine->resetWindowLayout(id);
    EXPECT_TRUE(engine->channelWindowLayouts().empty());
    engine->resetWindowLayout(id);
    EXPECT_EQ(engine->windowLayout(id), ChannelWindowLayout{});
}

TEST_F(SettingEffectsTests, aChannelsWindowKeepsItsLastModule) {
    const auto id = addChannel("B", "desk", 0).id;
    engine->updateWindowLayout(id, [](auto& layout) {
        layout.showsSPLMeter = layout.showsRTA = layout.showsSpectrogram = false;
    });
    engine->updateWindowLayout(id, [](auto& layout) { layout.showsLevelHistory = false; });
    EXPECT_TRUE(engine->windowLayout(id).showsLevelHistory);
    EXPECT_EQ(engine->windowLayout(id).visibleModuleCount(), 1);
}

TEST_F(SettingEffectsTests, aChannelsBandsAreThoseOfItsFraction) {
    const auto id = addChannel("B", "desk", 0).id;
    engine->updateDisplay(
        id, [](auto& display) { display.octaveFraction = OctaveFraction::fortyEighthOctave; });
    const auto standard = [](OctaveFraction fraction) {
        return TarvaneKit::OctaveBands::standardBands(fraction, 20.0, 20000.0);
    };
    EXPECT_EQ(engine->bands(UUID::main()), standard(OctaveFraction::thirdOctave));
    EXPECT_EQ(engine->bands(id), standard(OctaveFraction::fortyEighthOctave));
    EXPECT_EQ(&engine->bands(id), &engine->bands(id));
}

TEST_F(SettingEffectsTests, theScaleFollowsCalibrationAndUnit) {
    EXPECT_EQ(engine->rtaScale(UUID::main()), RTAScale::dbfs);
    TarvaneKit::CalibrationProfile profile;
    profile.reference.emplace();
    engine->calibration.set(profile);
    EXPECT_EQ(engine->rtaScale(UUID::main()), RTAScale::spl);
    engine->splReadoutShowsDBFS.set(true);
    EXPECT_EQ(engine->rtaScale(UUID::main()), RTAScale::dbfs);
}

TEST_F(SettingEffectsTests, aLoudnessChannelShowsTheLoudnessReadoutInItsTargetsColours) {
    using namespace TarvaneKit::SignalColors;
    using TarvaneKit::LoudnessMetric;
    engine->mainInputMeasuresLoudness.set(true);
    EXPECT_TRUE(engine->mainChannelInfo().measuresLoudness);
    EXPECT_EQ(engine->displayedMetric(UUID::main()),
              SPLMetric::loudness(LoudnessMetric::shortTerm));
    engine->loudnessReadout.set(LoudnessMetric::integrated);
    EXPECT_EQ(engine->displayedMetric(UUID::main()),
              SPLMetric::loudness(LoudnessMetric::integrated));
    // The graph shows short-term loudness whatever the headline is.
    EXPECT_EQ(engine->historyMetric(UUID::main()), SPLMetric::loudness(LoudnessMetric::shortTerm));
    // R 128: on target within 1 LU of -23 LUFS.
    EXPECT_EQ(engine->trafficLightColor(-21.0, UUID::main()), red);
    EXPECT_EQ(engine->trafficLightColor(-23.0, UUID::main()), green);
    EXPECT_EQ(engine->trafficLightColor(-25.0, UUID::main()), yellow);
    EXPECT_EQ(engine->activeTrafficLight(UUID::main()).offsetDB, 0.0);
    const auto other = addChannel("B", "desk", 0);
    EXPECT_EQ(engine->displayedMetric(other.id), engine->historyMetric(other.id));
}

TEST_F(SettingEffectsTests, aNewFractionGivesTheDisplaysItsNumberOfBandsAtOnce) {
    live().bandLevelsDB = {1.0};
    live().lineSpectrumDB = {1.0};
    int signals = 0;
    QObject::connect(&live(), &LiveMeterData::willChange, engine.get(), [&] { ++signals; });
    engine->octaveFraction.set(OctaveFraction::twentyFourthOctave);
    EXPECT_GT(signals, 0);
    const auto& bands = engine->bands(UUID::main());
    EXPECT_GT(bands.size(), 200U);
    EXPECT_EQ(live().bandLevelsDB, std::vector(bands.size(), -120.0));
    EXPECT_EQ(live().bandPeakHoldDB, std::vector(bands.size(), -120.0));
    EXPECT_EQ(live().lineSpectrumDB, std::vector{1.0});
    const auto other = addChannel("B", "desk", 0).id;
    engine->updateDisplay(
        other, [](auto& display) { display.octaveFraction = OctaveFraction::oneOctave; });
    EXPECT_EQ(live(other).bandLevelsDB, std::vector(engine->bands(other).size(), -120.0));
    EXPECT_EQ(live().bandLevelsDB.size(), bands.size());
}

TEST_F(SettingEffectsTests, resettingThePeakHoldEmptiesTheHoldsOfEveryChannel) {
    const auto other = addChannel("B", "desk", 0).id;
    for (const UUID& id : {UUID::main(), other}) {
        live(id).bandLevelsDB = {-10.0};
        live(id).bandPeakHoldDB = {-5.0};
        live(id).linePeakHoldDB = {-5.0, -6.0};
    }
    engine->resetPeakHold();
    for (const UUID& id : {UUID::main(), other}) {
        EXPECT_EQ(live(id).bandLevelsDB, std::vector{-10.0});
        EXPECT_EQ(live(id).bandPeakHoldDB, std::vector(engine->bands(id).size(), -120.0));
        EXPECT_TRUE(live(id).linePeakHoldDB.empty());
    }
}

TEST_F(SettingEffectsTests, turningRingOutOffAndOnlyThatClearsTheAlerts) {
    const auto other = addChannel("B", "desk", 0).id;
    const auto alerted = [&](const UUID& id) {
        live(id).currentRingAlert = TarvaneKit::RingAlert{.id = UUID::random(),
                                                          .frequencyHz = 1000.0,
                                                          .note = {},
                                                          .suggestedCutDB = -6.0,
                                                          .suggestedQ = 10.0,
                                                          .bandwidthHz = 50.0,
                                                          .date = clock.now()};
        live(id).heldRingAlert = live(id).currentRingAlert;
        TarvaneTests::EngineInsides::heldRingAlertDate(*engine, id) = clock.steadyNow();
    };
    const auto isClear = [&](const UUID& id) {
        return !live(id).currentRingAlert && !live(id).heldRingAlert &&
               !TarvaneTests::EngineInsides::heldRingAlertDate(*engine, id);
    };
    for (const UUID& id : {UUID::main(), other}) {
        alerted(id);
        engine->setRingOutEnabled(true, id);
        EXPECT_TRUE(engine->channelInfo(id)->ringOutEnabled);
        EXPECT_FALSE(isClear(id));
        engine->setRingOutEnabled(false, id);
        EXPECT_FALSE(engine->channelInfo(id)->ringOutEnabled);
        EXPECT_TRUE(isClear(id));
    }
    // Also of a channel that has no record any more.
    alerted(other);
    engine->removeChannel(other);
    engine->setRingOutEnabled(false, other);
    EXPECT_TRUE(isClear(other));
}

TEST_F(SettingEffectsTests, theLoudnessSwitchReachesARunningChannel) {
    const auto other = addChannel("B", "desk", 0).id;
    start();
    const auto measures = [&](const UUID& id) {
        return processorOf(id)->loudnessReadings().has_value();
    };
    for (const UUID& id : {UUID::main(), other}) {
        EXPECT_FALSE(measures(id));
        engine->setMeasuresLoudness(true, id);
        EXPECT_TRUE(engine->channelInfo(id)->measuresLoudness);
        EXPECT_TRUE(measures(id));
        engine->setMeasuresLoudness(false, id);
        EXPECT_FALSE(measures(id));
    }
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
}

TEST_F(SettingEffectsTests, anotherChannelsLoudnessSwitchStartsNoMeterOver) {
    engine->mainInputMeasuresLoudness.set(true);
    const auto other = addChannel("B", "desk", 0).id;
    start();
    for (int i = 0; i < 5; ++i) {
        audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000, 48000 * i)});
    }
    const auto& processor = processorOf();
    const double before = processor->loudnessReadings()->integrated;
    ASSERT_TRUE(std::isfinite(before));
    engine->setMeasuresLoudness(true, other);
    EXPECT_EQ(processor->loudnessReadings()->integrated, before);
    live().minSPLValueDB = 1.0;
    engine->resetLoudness(UUID::main());
    EXPECT_FALSE(std::isfinite(processor->loudnessReadings()->integrated));
    EXPECT_FALSE(std::isfinite(live().minSPLValueDB));
}

TEST_F(SettingEffectsTests, oneChannelsMinAndMaxCanBeResetAlone) {
    const auto other = addChannel("B", "desk", 0).id;
    live().minSPLValueDB = 1.0;
    live(other).minSPLValueDB = 1.0;
    live(other).inputClipState = TarvaneKit::InputClipState::latched;
    engine->resetMinMax(other);
    EXPECT_EQ(live().minSPLValueDB, 1.0);
    EXPECT_FALSE(std::isfinite(live(other).minSPLValueDB));
    EXPECT_EQ(live(other).inputClipState, TarvaneKit::InputClipState::none);
}

}  // namespace SettingEffectsTests
}  // namespace TarvaneApp
