// Thousands of things that a user, a device and the server may do, in any order, against a model
// of what the engine's fields must hold after each. A failure names the seed that repeats it:
//
//     TarvaneEngineTests --gtest_filter='RandomAction*' --gtest_random_seed=<seed>

#include <rapidcheck.h>

#include <algorithm>
#include <deque>
#include <random>
#include <set>

#include "Support/RecordGenerators.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Engine/EverySetting.h"
#include "TarvaneApp/Engine/PossibleSettings.h"

namespace TarvaneApp {
namespace MeterEngineRandomActionTests {
using TarvaneKit::AudioIOError;
using TarvaneKit::AudioSourceLoss;
using TarvaneKit::systemOutputUID;
using TarvaneKit::UUID;
using TarvaneTests::forEachSetting;
using UID = std::optional<std::string>;

// What is known of a channel's input, the main one's or another's.
struct Input {
    UUID id = UUID::main();
    UID uid;
    int left = 0;
    int right = 1;
    bool isStereo = false;
    bool isEnabled = true;
    bool isDigital = false;
    bool measuresLoudness = false;
    bool ringOutEnabled = true;
    std::optional<TarvaneKit::ReferenceCalibration> reference;
};

// One source that a start has opened, by the name that the audio system knows it under.
struct OpenSource {
    std::string sourceUID;
    std::vector<UUID> channels;
    UID device = std::nullopt;  // absent for the system's output, or where nothing was there

    bool feedsMain() const { return std::ranges::count(channels, UUID::main()) > 0; }
};

// What was asked for with it, whether or not it could be opened.
struct Plan {
    UID uid;
    std::vector<UUID> channels;
};

using Signature = std::vector<std::tuple<UUID, UID, int, std::optional<int>>>;

struct Start {
    std::vector<Plan> plans;
    std::vector<OpenSource> sources;
    Signature signature;
    bool devicesChanged = false;
    bool fails = false;
    bool leavesSomeOut = false;
};

class MeterEngineRandomActionTests : public TarvaneTests::EngineFixture {
  protected:
    static constexpr int steps = 20000;

    MeterEngineRandomActionTests() : seed(chosenSeed()), random(seed) {
        audio.behaviour(systemOutputUID).channelCount = 2;
        for (const auto& [uid, id] : deviceIDs) {
            TarvaneTests::FakeControls controls;
            controls.masterGainDB = 0.0;
            audio.setControls(id, controls);
        }
        engine->refreshDevices();
        inputs = {Input{}};
        settingValues = valuesOfFreeSettings();
    }

    ~MeterEngineRandomActionTests() override { letSourcesOpen(); }

    static std::uint32_t chosenSeed() {
        const auto given = static_cast<std::uint32_t>(GTEST_FLAG_GET(random_seed));
        return given != 0 ? given : std::random_device{}() % 99999 + 1;
    }

    // Chance.

    int below(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    bool chance(int percent) { return below(100) < percent; }
    template <class T>
    const T& oneOf(const std::vector<T>& values) {
        return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
    }
    UID anyUID() {
        return oneOf(std::vector<UID>{std::nullopt, "mic", "desk", "gone", systemOutputUID});
    }
    Input& anyInput() {
        return inputs[static_cast<std::size_t>(below(static_cast<int>(inputs.size())))];
    }
    /// Null while there are none.
    Input* anyExtra() {
        return inputs.size() < 2
                   ? nullptr
                   : &inputs[1 +
                             static_cast<std::size_t>(below(static_cast<int>(inputs.size()) - 1))];
    }

    // The model's own rules.

    Input& mainInput() { return inputs.front(); }
    bool isListed(const std::string& uid) const { return plugged.contains(uid); }
    int inputsOf(const UID& uid) const {
        if (uid == systemOutputUID) {
            return 2;
        }
        return uid == "desk" && isListed("desk") ? 8 : defaultInputs();
    }
    // The default is the microphone, and nothing while that is unplugged.
    static int defaultInputs() { return 1; }

    std::optional<double> gainDB(const UID& uid) const {
        if (!uid) {
            return gains.at("mic");
        }
        return isListed(*uid) ? std::optional(gains.at(*uid)) : std::nullopt;
    }

    double offsetDB(const Input& input) const {
        if (input.isDigital || !input.reference) {
            return 0.0;
        }
        const auto now = gainDB(input.uid);
        const auto then = input.reference->inputGainDB;
        return input.reference->offsetDB + (now && then ? *then - *now : 0.0);
    }

    Signature extraSignature() const {
        Signature result = signature();
        std::erase_if(result,
                      [](const auto& entry) { return std::get<UUID>(entry) == UUID::main(); });
        return result;
    }
    Signature signature() const {
        Signature result;
        for (const Input& input : inputs) {
            if (input.isEnabled) {
                result.emplace_back(input.id, input.uid, input.left,
                                    input.isStereo ? std::optional(input.right) : std::nullopt);
            }
        }
        std::ranges::sort(result);
        return result;
    }
    void noteChange(bool changed) { sourcesChanged = sourcesChanged || (changed && isRunning); }
    // Whether a restart would open another device than is open, or one where none is.
    bool restartOpensAnother() const {
        const UID defaultUID = isListed("mic") ? UID("mic") : std::nullopt;
        return std::ranges::any_of(plansOfRun, [&](const Plan& plan) {
            const bool holdsMain = std::ranges::count(plan.channels, UUID::main()) > 0;
            UID after = plan.uid;
            if (plan.uid != systemOutputUID && !(plan.uid && isListed(*plan.uid))) {
                after = !plan.uid || holdsMain ? defaultUID : std::nullopt;
            }
            const auto open = std::ranges::find_if(openSources, [&](const OpenSource& source) {
                return std::ranges::count(source.channels, plan.channels.front()) > 0;
            });
            if (!after || open == openSources.end()) {
                return after.has_value();
            }
            return open->device && open->device != after;
        });
    }
    void noteDevices() {
        if (isStarting) {
            underWay.devicesChanged = true;
        }
        noteChange(isRunning && restartOpensAnother());
    }

    Start plannedStart() {
        std::vector<std::pair<UID, OpenSource>> plans;
        for (const Input& input : inputs) {
            if (input.id != UUID::main() && !input.isEnabled) {
                continue;
            }
            auto plan =
                std::ranges::find_if(plans, [&](const auto& p) { return p.first == input.uid; });
            if (plan == plans.end()) {
                plan = plans.insert(plans.end(), {input.uid, {}});
            }
            plan->second.channels.push_back(input.id);
        }
        Start start;
        start.signature = signature();
        for (auto& [uid, source] : plans) {
            const bool isThere = !uid || uid == systemOutputUID || isListed(*uid);
            source.sourceUID = isThere ? uid.value_or("") : "";
            start.plans.push_back({.uid = uid, .channels = source.channels});
            const bool opens =
                (isThere || source.feedsMain()) && !brokenSources.contains(source.sourceUID);
            if (opens) {
                start.sources.push_back(source);
            } else if (source.feedsMain()) {
                start.fails = true;
            } else {
                start.leavesSomeOut = true;
            }
        }
        return start;
    }

    // Settings that nothing but their own assignment changes.

    static bool isFree(const std::string& key) {
        static const std::set<std::string> bound{
            "deviceUID", "channelIndex", "mainInputIsStereo", "mainInputRightChannelIndex",
            "mainInputIsDigital", "mainInputMeasuresLoudness", "ringOutEnabled", "extraChannels",
            "channelWindowLayouts", "calibration", "splMeterPlacement", "rtaPlacement",
            "spectrogramPlacement", "levelHistoryPlacement",
            // Absent isn't stored.
            "targetCurveName"};
        return !bound.contains(key);
    }
    std::map<std::string, std::string> valuesOfFreeSettings() {
        auto values = TarvaneTests::valuesOfSettings(*engine);
        std::erase_if(values, [](const auto& entry) { return !isFree(entry.first); });
        return values;
    }
    void assignAnyFreeSetting() {
        const int wanted = below(static_cast<int>(settingValues.size()));
        int i = 0;
        forEachSetting(*engine, [&](const std::string& key, auto& setting) {
            if (!isFree(key) || i++ != wanted) {
                return;
            }
            using Value = std::remove_cvref_t<decltype(setting())>;
            std::optional<Value> value;
            TarvaneKit::Testing::drawFrom(rc::Random(random()), 20, [&value, &key] {
                value = TarvaneTests::possible(key, TarvaneKit::Testing::drawnValue<Value>());
            });
            setting.set(*value);
            settingValues[key] = TarvaneKit::encode(setting()).value_or("no text");
            EXPECT_EQ(setting(), *value);
        });
    }

    // What can happen.

    void finishStart(const Start& start) {
        isStarting = false;
        cancelledStartIsOut = false;  // starts come back in their order
        if (start.fails) {
            expectMessage();
            return;
        }
        isRunning = true;
        sourcesChanged = false;
        openSources = start.sources;
        for (OpenSource& source : openSources) {
            const std::string uid = source.sourceUID.empty() ? "mic" : source.sourceUID;
            source.device = isListed(uid) ? UID(uid) : std::nullopt;
        }
        plansOfRun = start.plans;
        noteChange(start.signature != signature());
        noteChange(start.devicesChanged && restartOpensAnother());
        withProcessor.clear();
        for (const OpenSource& source : openSources) {
            withProcessor.insert(source.channels.begin(), source.channels.end());
        }
        if (start.leavesSomeOut) {
            expectMessage();
        }
    }
    void endRun() {
        isRunning = false;
        isPaused = false;
        sourcesChanged = false;
        openSources.clear();
    }
    void expectMessage() {
        EXPECT_TRUE(engine->errorMessage());
        engine->dismissError();
    }

    void pressStart() {
        const bool mayStart = !isRunning && !isStarting;
        const bool isSlow = mayStart && !cancelledStartIsOut && chance(30);
        if (mayStart) {
            underWay = plannedStart();
        }
        if (isSlow) {
            for (const std::string& uid : sourceUIDs) {
                audio.behaviour(uid).opensSlowly = true;
            }
        }
        engine->start();
        if (mayStart) {
            isStarting = true;
        }
        if (mayStart && !isSlow) {
            awaitStart();
        }
    }
    void letSourcesOpen() {
        for (const std::string& uid : sourceUIDs) {
            audio.open(uid);
        }
    }
    void awaitStart() {
        letSourcesOpen();
        if (isStarting) {
            waitUntil([&] { return !engine->isStarting(); });
            finishStart(underWay);
        }
    }
    void pressStop() {
        engine->stop();
        if (isStarting) {
            isStarting = false;
            cancelledStartIsOut = true;
            letSourcesOpen();
        } else {
            endRun();
        }
    }
    void pressPause() {
        if (chance(50)) {
            engine->pause();
            isPaused = isRunning;
        } else {
            engine->resume();
            isPaused = false;
        }
    }
    void fireTick() {
        timer.fire();
        if (isRunning && !isPaused && chance(50)) {
            tick();
        }
    }
    void feed() {
        const std::string uid = oneOf(sourceUIDs);
        const int count = uid == "desk" ? 8 : uid == systemOutputUID ? 2 : 1;
        std::vector<std::vector<float>> block(static_cast<std::size_t>(count),
                                              TarvaneTests::sine(1000.0, 0.1, 1 + below(9000)));
        if (chance(10)) {
            block.front().front() = std::nanf("");
        }
        audio.feed(uid, block);
    }
    void loseSource() {
        const std::string uid = oneOf(sourceUIDs);
        const auto loss = chance(20) ? AudioSourceLoss::serverLost : AudioSourceLoss::deviceRemoved;
        const auto isHit = [&](const OpenSource& source) { return source.sourceUID == uid; };
        if (isStarting) {
            return;  // nobody's sources yet
        }
        audio.lose(uid, loss);
        if (std::ranges::none_of(openSources, isHit)) {
            return;
        }
        settleAll();
        const bool endsRun = loss == AudioSourceLoss::serverLost ||
                             std::ranges::any_of(openSources, [&](const auto& s) {
                                 return isHit(s) && s.feedsMain();
                             });
        for (const OpenSource& source : openSources) {
            if (!isHit(source) || source.feedsMain() || loss == AudioSourceLoss::serverLost) {
                continue;
            }
            for (const UUID& id : source.channels) {
                // Which of two sources of one name dies first is anybody's guess: if it is the
                // main input's, the other's channels keep what they last read.
                if (!endsRun || !processorOf(id)) {
                    withProcessor.erase(id);
                }
            }
        }
        if (endsRun) {
            endRun();
        } else {
            std::erase_if(openSources, isHit);
        }
        expectMessage();
    }
    void plugOrUnplug() {
        const std::string uid = chance(50) ? "mic" : "desk";
        if (isListed(uid)) {
            plugged.erase(uid);
            audio.unplug(uid);
        } else {
            plugged.insert(uid);
            audio.plugIn({.id = deviceIDs.at(uid),
                          .uid = uid,
                          .name = uid,
                          .channelCount = uid == "desk" ? 8 : 1});
        }
        settleAll();
        noteDevices();
    }
    void turnGain() {
        const std::string uid = chance(50) ? "mic" : "desk";
        const double gain = -below(60);
        TarvaneTests::FakeControls controls;
        controls.masterGainDB = gain;
        gains[uid] = gain;
        audio.setControls(deviceIDs.at(uid), controls);
        settleAll();
    }
    void breakOrMendSource() {
        if (isStarting || cancelledStartIsOut) {
            return;
        }
        const std::string uid = oneOf(sourceUIDs);
        if (brokenSources.erase(uid) > 0) {
            audio.behaviour(uid).startError.reset();
        } else if (chance(30)) {
            brokenSources.insert(uid);
            audio.behaviour(uid).startError = AudioIOError::noInputAvailable();
        }
    }

    void addOrRemoveChannel() {
        const auto before = extraSignature();
        if (inputs.size() < 2 || (inputs.size() < 7 && chance(50))) {
            engine->addChannel();
            const ChannelConfig& made = engine->extraChannels().back();
            EXPECT_EQ(made.deviceUID, mainInput().uid);
            EXPECT_GE(made.channelIndex, 0);
            EXPECT_LT(made.channelIndex, std::max(inputsOf(mainInput().uid), 1));
            inputs.push_back({.id = made.id,
                              .uid = made.deviceUID,
                              .left = made.channelIndex,
                              .right = made.rightChannelIndex,
                              .isStereo = false,
                              .isEnabled = true,
                              .isDigital = mainInput().uid == systemOutputUID,
                              .measuresLoudness = false,
                              .ringOutEnabled = mainInput().uid != systemOutputUID,
                              .reference = {}});
        } else {
            const UUID id = anyExtra()->id;
            engine->removeChannel(id);
            std::erase_if(inputs, [&](const Input& input) { return input.id == id; });
        }
        noteChange(extraSignature() != before);
    }
    void moveChannel() {
        const UID uid = anyUID();
        const int count = inputsOf(uid);
        Input& input = anyInput();
        const auto before = extraSignature();
        if (input.id == UUID::main()) {
            engine->selectedDeviceUID.set(uid);
            const bool clamps = input.left >= count;
            noteChange(clamps && input.left != 0);
            input.left = clamps ? 0 : input.left;
            if (uid == input.uid) {
                return;
            }
            input.isDigital = uid == systemOutputUID;
            if (uid == systemOutputUID) {
                input.left = 0;
                input.right = 1;
                input.isStereo = true;
            } else if (input.right >= count) {
                input.isStereo = false;
            }
            input.uid = uid;
            noteChange(true);
            return;
        }
        engine->setChannelDevice(input.id, uid);
        input.uid = uid;
        input.isDigital = uid == systemOutputUID;
        if (uid == systemOutputUID) {
            input.left = 0;
            input.right = 1;
            input.isStereo = true;
        } else {
            input.left = input.left >= count ? 0 : input.left;
            if (input.right >= count) {
                input.isStereo = false;
                input.right = std::min(count - 1, input.left + 1);
            }
        }
        noteChange(extraSignature() != before);
    }
    void rewireMainInput() {
        const int value = below(8);
        switch (below(3)) {
            case 0:
                engine->selectedChannelIndex.set(value);
                noteChange(std::exchange(mainInput().left, value) != value);
                break;
            case 1:
                engine->mainInputRightChannelIndex.set(value);
                noteChange(std::exchange(mainInput().right, value) != value);
                break;
            default:
                engine->mainInputIsStereo.set(value % 2 == 0);
                noteChange(std::exchange(mainInput().isStereo, value % 2 == 0) != (value % 2 == 0));
        }
    }
    void editChannel() {
        Input* input = anyExtra();
        if (input == nullptr) {
            return;
        }
        const auto before = extraSignature();
        switch (below(6)) {
            case 0:
                input->isEnabled = !input->isEnabled;
                break;
            case 1:
                input->isStereo = !input->isStereo;
                break;
            case 2:
                input->left = below(8);
                break;
            case 3:
                input->right = below(8);
                break;
            default:  // what no restart is asked for
                break;
        }
        const std::string name = "Channel " + std::to_string(below(1000));
        engine->updateChannel(input->id, [&](ChannelConfig& channel) {
            channel.name = name;
            channel.isEnabled = input->isEnabled;
            channel.isStereo = input->isStereo;
            channel.channelIndex = input->left;
            channel.rightChannelIndex = input->right;
            // Follow the main input's display, or be pinned to it.
            channel.display =
                chance(50) ? std::nullopt : std::optional(engine->display(UUID::main()));
        });
        EXPECT_EQ(engine->channelInfo(input->id)->name, name);
        noteChange(extraSignature() != before);
    }
    void changeSwitches() {
        Input& input = anyInput();
        switch (below(3)) {
            case 0:
                input.measuresLoudness = !input.measuresLoudness;
                engine->setMeasuresLoudness(input.measuresLoudness, input.id);
                break;
            case 1:
                input.ringOutEnabled = !input.ringOutEnabled;
                engine->setRingOutEnabled(input.ringOutEnabled, input.id);
                break;
            default:
                input.isDigital = !input.isDigital;
                engine->setDigitalSource(input.isDigital, input.id);
        }
    }
    void calibrate() {
        Input& input = anyInput();
        if (chance(20)) {
            engine->clearReferenceCalibration(input.id);
            input.reference.reset();
            return;
        }
        const double knownSPL = below(230) - 15;
        engine->calibrateReference(knownSPL, input.id);
        const bool isLive = isRunning && !isPaused && withProcessor.contains(input.id);
        const bool isPossible = knownSPL >= 0.0 && knownSPL <= 200.0 && isLive;
        const bool failed = engine->errorMessage().has_value();
        engine->dismissError();
        EXPECT_TRUE(isPossible || failed);
        if (failed) {
            return;  // with no signal, also where it was possible
        }
        const auto& profile =
            input.id == UUID::main() ? engine->calibration() : *config(input.id).calibration;
        ASSERT_TRUE(profile.reference);
        EXPECT_EQ(profile.reference->referenceDeviceUID, input.uid);
        EXPECT_EQ(profile.reference->inputGainDB, gainDB(input.uid));
        EXPECT_EQ(profile.reference->calibratedAt, clock.now());
        input.reference = profile.reference;
        if (input.id != UUID::main()) {
            input.isDigital = false;
        }
    }
    const ChannelConfig& config(const UUID& id) {
        return *std::ranges::find(engine->extraChannels(), id, &ChannelConfig::id);
    }
    void press() {
        const UUID id = anyInput().id;
        switch (below(6)) {
            case 0:
                engine->resetMinMax();
                for (const Input& input : inputs) {
                    EXPECT_EQ(live(input.id).minSPLValueDB, HUGE_VAL);
                    EXPECT_EQ(live(input.id).inputClipState, TarvaneKit::InputClipState::none);
                }
                break;
            case 1:
                engine->resetMinMax(id);
                EXPECT_EQ(live(id).maxSPLValueDB, -HUGE_VAL);
                break;
            case 2:
                engine->resetPeakHold();
                EXPECT_EQ(live(id).bandPeakHoldDB.size(), engine->bands(id).size());
                break;
            case 3:
                engine->resetLoudness(id);
                EXPECT_EQ(live(id).minSPLValueDB, HUGE_VAL);
                break;
            case 4:
                engine->configureLeq(TarvaneKit::Weighting::c, 1.0 + below(100));
                settingValues = valuesOfFreeSettings();
                break;
            default:
                engine->applyLayoutPreset(
                    TarvaneKit::allCases<LayoutPreset>()[static_cast<std::size_t>(below(6))]);
        }
    }
    void placeModule() {
        const std::vector<Setting<ModulePlacement>*> all{
            &engine->splMeterPlacement, &engine->rtaPlacement, &engine->spectrogramPlacement,
            &engine->levelHistoryPlacement};
        oneOf(all)->set(
            TarvaneKit::allCases<ModulePlacement>()[static_cast<std::size_t>(below(3))]);
        EXPECT_TRUE(std::ranges::any_of(
            all, [](auto* setting) { return (*setting)() == ModulePlacement::mainWindow; }));
    }
    // A stranger's profile: any values in any of its fields.
    void loadSnapshot() {
        std::optional<SettingsSnapshot> snapshot;
        TarvaneKit::Testing::drawFrom(rc::Random(random()), 20, [&snapshot] {
            snapshot = TarvaneKit::Testing::drawnValue<SettingsSnapshot>();
        });
        // What the model doesn't compute: a level by a microphone file.
        const auto withoutSensFactor = [](std::optional<TarvaneKit::CalibrationProfile>& profile) {
            if (profile && profile->micCalFile) {
                profile->micCalFile->sensFactorDB.reset();
            }
        };
        withoutSensFactor(snapshot->calibration);
        if (snapshot->channels) {
            for (ChannelConfig& channel : *snapshot->channels) {
                channel.deviceUID = anyUID();
                withoutSensFactor(channel.calibration);
            }
            if (inputs.size() > 1 && !snapshot->channels->empty()) {
                snapshot->channels->front().id = anyExtra()->id;
            }
        }
        if (snapshot->audioInput) {
            snapshot->audioInput->deviceUID = anyUID();
        }
        const bool includesInputs = chance(60);
        const bool wasRunning = isRunning;
        const bool mustRestart = sourcesChanged;
        takeInputsOfEngine();  // a restart may have rounded the date of a calibration
        const auto inputsBefore = inputs;
        const Signature before = signature();
        engine->applySettings(*snapshot, includesInputs);
        takeInputsOfEngine();
        settingValues = valuesOfFreeSettings();

        if (!includesInputs) {
            ASSERT_EQ(inputs.size(), inputsBefore.size());
            for (std::size_t i = 0; i < inputs.size(); ++i) {
                EXPECT_EQ(inputs[i].isDigital, inputsBefore[i].isDigital);
                EXPECT_EQ(inputs[i].measuresLoudness, inputsBefore[i].measuresLoudness);
                EXPECT_EQ(inputs[i].reference, inputsBefore[i].reference);
                EXPECT_EQ(inputs[i].isEnabled, inputsBefore[i].isEnabled);
            }
            EXPECT_EQ(signature(), before);
        }
        EXPECT_TRUE(engine->mainWindowShowsGraphArea() ||
                    engine->splMeterPlacement() == ModulePlacement::mainWindow ||
                    engine->levelHistoryPlacement() == ModulePlacement::mainWindow);
        if (isStarting) {
            if (signature() != underWay.signature) {
                underWay = plannedStart();
            }
            awaitStart();
        } else if (wasRunning && engine->isStarting()) {
            endRun();
            underWay = plannedStart();
            isStarting = true;
            awaitStart();
        } else {
            EXPECT_FALSE(wasRunning && (mustRestart || signature() != before));
        }
    }
    void takeInputsOfEngine() {
        inputs.resize(1);
        inputs.front() = {.id = UUID::main(),
                          .uid = engine->selectedDeviceUID(),
                          .left = engine->selectedChannelIndex(),
                          .right = engine->mainInputRightChannelIndex(),
                          .isStereo = engine->mainInputIsStereo(),
                          .isEnabled = true,
                          .isDigital = engine->mainInputIsDigital(),
                          .measuresLoudness = engine->mainInputMeasuresLoudness(),
                          .ringOutEnabled = engine->ringOutEnabled(),
                          .reference = engine->calibration().reference};
        for (const ChannelConfig& channel : engine->extraChannels()) {
            inputs.push_back(
                {.id = channel.id,
                 .uid = channel.deviceUID,
                 .left = channel.channelIndex,
                 .right = channel.rightChannelIndex,
                 .isStereo = channel.isStereo,
                 .isEnabled = channel.isEnabled,
                 .isDigital = channel.isDigital,
                 .measuresLoudness = channel.measuresLoudness,
                 .ringOutEnabled = channel.ringOutEnabled,
                 .reference = channel.calibration ? channel.calibration->reference : std::nullopt});
        }
    }
    void changeDemand() {
        const auto key =
            std::pair(chance(50) ? ChannelDemand::rta : ChannelDemand::spectrogram, anyInput().id);
        int& count = demand[key];
        if (count > 0 && chance(50)) {
            engine->removeDemand(key.first, key.second);
            --count;
        } else {
            engine->addDemand(key.first, key.second);
            ++count;
        }
        EXPECT_EQ(engine->isDemanded(key.first, key.second), count > 0);
    }
    void restartProgram() {
        awaitStart();
        engine->dismissError();
        auto before = TarvaneTests::valuesOfSettings(*engine);
        makeEngine();
        // Absent comes back as the default.
        before["targetCurveName"] = TarvaneTests::valuesOfSettings(*engine).at("targetCurveName");
        EXPECT_EQ(TarvaneTests::valuesOfSettings(*engine), before);
        EXPECT_EQ(audio.runningCount(), 0);
        endRun();
        cancelledStartIsOut = false;
        withProcessor.clear();
        demand.clear();
    }

    void settleAll() {
        for (int i = 0; i < 3; ++i) {
            settle();
        }
    }

    void act() {
        using Action = void (MeterEngineRandomActionTests::*)();
        struct Choice {
            const char* name;
            Action action;
            int weight;
        };
        static const std::vector<Choice> choices{
            {"start", &MeterEngineRandomActionTests::pressStart, 8},
            {"let a start finish", &MeterEngineRandomActionTests::awaitStart, 4},
            {"stop", &MeterEngineRandomActionTests::pressStop, 3},
            {"pause or resume", &MeterEngineRandomActionTests::pressPause, 5},
            {"tick", &MeterEngineRandomActionTests::fireTick, 12},
            {"feed", &MeterEngineRandomActionTests::feed, 15},
            {"lose a source", &MeterEngineRandomActionTests::loseSource, 2},
            {"plug or unplug", &MeterEngineRandomActionTests::plugOrUnplug, 3},
            {"turn a gain", &MeterEngineRandomActionTests::turnGain, 4},
            {"break or mend a source", &MeterEngineRandomActionTests::breakOrMendSource, 3},
            {"add or remove", &MeterEngineRandomActionTests::addOrRemoveChannel, 6},
            {"move", &MeterEngineRandomActionTests::moveChannel, 6},
            {"rewire the main input", &MeterEngineRandomActionTests::rewireMainInput, 4},
            {"edit a channel", &MeterEngineRandomActionTests::editChannel, 8},
            {"switches", &MeterEngineRandomActionTests::changeSwitches, 5},
            {"calibrate", &MeterEngineRandomActionTests::calibrate, 6},
            {"press", &MeterEngineRandomActionTests::press, 6},
            {"place a module", &MeterEngineRandomActionTests::placeModule, 3},
            {"assign a setting", &MeterEngineRandomActionTests::assignAnyFreeSetting, 15},
            {"change demand", &MeterEngineRandomActionTests::changeDemand, 5},
            {"load a snapshot", &MeterEngineRandomActionTests::loadSnapshot, 3},
            {"restart the program", &MeterEngineRandomActionTests::restartProgram, 1},
        };
        static const std::vector<std::size_t> deck = [] {
            std::vector<std::size_t> result;
            for (std::size_t i = 0; i < choices.size(); ++i) {
                result.insert(result.end(), static_cast<std::size_t>(choices[i].weight), i);
            }
            return result;
        }();
        const Choice& choice = choices[oneOf(deck)];
        trail.push_back(choice.name);
        if (trail.size() > 12) {
            trail.pop_front();
        }
        clock.advance(below(100) / 1000.0);
        (this->*choice.action)();
        settleAll();
    }

    void expectAgreement() {
        EXPECT_EQ(engine->isStarting(), isStarting);
        EXPECT_EQ(engine->isRunning(), isRunning);
        EXPECT_EQ(engine->isPaused(), isPaused);
        EXPECT_EQ(engine->channelSourcesChangedWhileRunning(), sourcesChanged);
        EXPECT_EQ(timer.isRunning(), isRunning && !isPaused);
        EXPECT_EQ(engine->errorMessage(), std::nullopt);
        if (!isStarting && !cancelledStartIsOut) {
            EXPECT_EQ(audio.runningCount(), static_cast<int>(openSources.size()));
        }
        EXPECT_EQ(audio.clearedTooEarly(), 0);

        const auto infos = engine->channelInfos();
        ASSERT_EQ(infos.size(), inputs.size());
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const Input& input = inputs[i];
            const ChannelInfo& info = infos[i];
            EXPECT_EQ(info.id, input.id);
            EXPECT_EQ(info.deviceUID, input.uid);
            EXPECT_EQ(info.channelIndex, input.left);
            EXPECT_EQ(info.rightChannelIndex,
                      input.isStereo ? std::optional(input.right) : std::nullopt);
            EXPECT_EQ(info.isEnabled, input.isEnabled);
            EXPECT_EQ(info.measuresLoudness, input.measuresLoudness);
            EXPECT_EQ(info.ringOutEnabled, input.ringOutEnabled);
            EXPECT_NEAR(info.calibration.broadbandOffsetDB(), offsetDB(input), 1e-9);
            EXPECT_EQ(engine->isCalibrated(input.id),
                      input.reference.has_value() && !input.isDigital);
            if (engine->display(input.id).showsDBFS) {
                EXPECT_NEAR(engine->splReadoutDisplayOffsetDB(input.id),
                            input.measuresLoudness ? 0.0 : offsetDB(input), 1e-9);
            }
            const auto& processor = processorOf(input.id);
            EXPECT_EQ(processor != nullptr, withProcessor.contains(input.id));
            if (processor) {
                EXPECT_EQ(processor->loudnessReadings().has_value(), input.measuresLoudness);
            }
            EXPECT_FALSE(std::isnan(live(input.id).currentSPLValueDB));
            EXPECT_LE(live(input.id).inputPeakDBFS, live(input.id).inputPeakHoldDBFS);
        }
        EXPECT_EQ(valuesOfFreeSettings(), settingValues);
        EXPECT_TRUE(store.isFlushed());
    }

    const std::uint32_t seed;
    std::mt19937 random;
    std::deque<std::string> trail;

    // The model.
    const std::map<std::string, std::uint32_t> deviceIDs{{"mic", 40}, {"desk", 41}};
    const std::vector<std::string> sourceUIDs{"", "mic", "desk", systemOutputUID};
    std::vector<Input> inputs;  // the main one first
    std::set<std::string> plugged{"mic", "desk"};
    std::map<std::string, double> gains{{"mic", 0.0}, {"desk", 0.0}};
    std::set<std::string> brokenSources;
    bool isStarting = false;
    bool cancelledStartIsOut = false;
    bool isRunning = false;
    bool isPaused = false;
    bool sourcesChanged = false;
    Start underWay;
    std::vector<OpenSource> openSources;
    std::vector<Plan> plansOfRun;
    std::set<UUID> withProcessor;
    std::map<std::pair<ChannelDemand, UUID>, int> demand;
    std::map<std::string, std::string> settingValues;
};

TEST_F(MeterEngineRandomActionTests, theFieldsHoldWhatTheModelSaysAfterEveryStep) {
    std::cout << "seed " << seed << '\n';
    for (int step = 0; step < steps; ++step) {
        act();
        expectAgreement();
        if (HasFailure()) {
            std::string last;
            for (const std::string& name : trail) {
                last += "\n  " + name;
            }
            FAIL() << "at step " << step << ", --gtest_random_seed=" << seed
                   << " repeats it; the last actions:" << last;
        }
    }
}

}  // namespace MeterEngineRandomActionTests
}  // namespace TarvaneApp
