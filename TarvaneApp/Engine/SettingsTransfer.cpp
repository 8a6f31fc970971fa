#include "Engine/SettingsTransfer.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <tuple>
#include <utility>

#include "Engine/CalibrationProfiles.h"
#include "Records/ExtraChannels.h"
#include "Records/PossibleNumbers.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::UUID;

namespace {

namespace Possible = PossibleNumbers;

// What links a field of the snapshot with its setting is one line in a table, that drives both
// ways. Three kinds of line:

// The value as it is, if it may stand. A number beyond what the settings store would be believed is
// no better from a file: taken today it would be gone after the next launch.
template <class T, class SettingType, class Predicate>
struct Plain {
    std::optional<T> SettingsSnapshot::*field;
    SettingType MeterSettings::*setting;
    Predicate mayStand;

    void capture(const MeterSettings& settings, SettingsSnapshot& into) const {
        into.*field = (settings.*setting)();
    }
    void apply(const SettingsSnapshot& snapshot, MeterSettings& settings) const {
        if (const auto& value = snapshot.*field; value && mayStand(*value)) {
            (settings.*setting).set(*value);
        }
    }
};

struct Anything {
    template <class T>
    bool operator()(const T&) const {
        return true;
    }
};

template <class T, class SettingType, class Predicate = Anything>
constexpr auto plain(std::optional<T> SettingsSnapshot::*field, SettingType MeterSettings::*setting,
                     Predicate mayStand = {}) {
    return Plain<T, SettingType, Predicate>{field, setting, mayStand};
}

// A value that may be "none", in an object of its own.
template <class Choice, class T, class SettingType>
struct Chosen {
    std::optional<Choice> SettingsSnapshot::*field;
    std::optional<T> Choice::*chosen;
    SettingType MeterSettings::*setting;

    void capture(const MeterSettings& settings, SettingsSnapshot& into) const {
        (into.*field).emplace().*chosen = (settings.*setting)();
    }
    void apply(const SettingsSnapshot& snapshot, MeterSettings& settings) const {
        if (const auto& choice = snapshot.*field) {
            (settings.*setting).set((*choice).*chosen);
        }
    }
};

template <class Choice, class T, class SettingType>
constexpr auto chosen(std::optional<Choice> SettingsSnapshot::*field,
                      std::optional<T> Choice::*choice, SettingType MeterSettings::*setting) {
    return Chosen<Choice, T, SettingType>{field, choice, setting};
}

// A record of many parts, some of which may have to give way.
template <class T, class Repair>
struct Repaired {
    std::optional<T> SettingsSnapshot::*field;
    Setting<T> MeterSettings::*setting;
    Repair repair;  // of the file's value and the live one

    void capture(const MeterSettings& settings, SettingsSnapshot& into) const {
        into.*field = (settings.*setting)();
    }
    void apply(const SettingsSnapshot& snapshot, MeterSettings& settings) const {
        if (const auto& value = snapshot.*field) {
            (settings.*setting).set(repair(*value, (settings.*setting)()));
        }
    }
};

template <class T, class Repair>
constexpr auto repaired(std::optional<T> SettingsSnapshot::*field,
                        Setting<T> MeterSettings::*setting, Repair repair) {
    return Repaired<T, Repair>{field, setting, repair};
}

CalibrationProfile repairedProfile(const CalibrationProfile& profile, const CalibrationProfile&) {
    return CalibrationProfiles::sanitized(profile);
}

std::vector<ChannelConfig> repairedChannels(std::vector<ChannelConfig> channels,
                                            const std::vector<ChannelConfig>&) {
    for (ChannelConfig& channel : channels) {
        channel = Possible::repaired(std::move(channel));
        if (channel.calibration) {
            channel.calibration = CalibrationProfiles::sanitized(*std::move(channel.calibration));
        }
    }
    return channels;
}

std::vector<UUID> repairedOverlays(const std::vector<UUID>& ids, const std::vector<UUID>&) {
    return channelIDsThatMayStand(ids);
}

// No more of them than there may be channels.
std::map<UUID, ChannelWindowLayout> repairedLayouts(
    const std::map<UUID, ChannelWindowLayout>& layouts,
    const std::map<UUID, ChannelWindowLayout>&) {
    std::map<UUID, ChannelWindowLayout> result;
    for (const auto& [id, layout] : layouts) {
        if (result.size() == mostChannels) {
            break;
        }
        result.emplace(id, Possible::repaired(layout));
    }
    return result;
}

SpectrogramRanges repairedRanges(const SpectrogramRanges& ranges, const SpectrogramRanges& live) {
    return Possible::repaired(ranges, live);
}

// Of the seven readings those that a programme is known by; the others can be looked at for a
// moment, and no setup begins with them.
bool isHeadline(LoudnessMetric metric) {
    return metric == LoudnessMetric::momentary || metric == LoudnessMetric::shortTerm ||
           metric == LoudnessMetric::integrated;
}

bool isFinite(double number) {
    return std::isfinite(number);
}

using S = SettingsSnapshot;
using M = MeterSettings;

// The tables, in the order of their application. What stands alone in one is applied by more than
// its line.

constexpr std::tuple inputs{
    repaired(&S::calibration, &M::calibration, repairedProfile),
    plain(&S::mainInputIsDigital, &M::mainInputIsDigital),
    plain(&S::mainInputRightChannelIndex, &M::mainInputRightChannelIndex, Possible::isInput),
    plain(&S::mainInputIsStereo, &M::mainInputIsStereo),
    plain(&S::mainInputMeasuresLoudness, &M::mainInputMeasuresLoudness),
    repaired(&S::channels, &M::extraChannels, repairedChannels)};

constexpr std::tuple channelsAndMeter{
    plain(&S::splMeterChannelID, &M::splMeterChannelID),
    plain(&S::rtaChannelID, &M::rtaChannelID),
    plain(&S::spectrogramChannelID, &M::spectrogramChannelID),
    repaired(&S::rtaOverlayChannelIDs, &M::rtaOverlayChannelIDs, repairedOverlays),
    chosen(&S::levelHistoryChannelID, &S::ChannelChoice::id, &M::levelHistoryChannelID),
    repaired(&S::levelHistoryOverlayChannelIDs, &M::levelHistoryOverlayChannelIDs,
             repairedOverlays),
    repaired(&S::channelWindowLayouts, &M::channelWindowLayouts, repairedLayouts),

    plain(&S::octaveFraction, &M::octaveFraction),
    plain(&S::viewMode, &M::viewMode),
    plain(&S::octaveNormalizedSpectrumDisplay, &M::octaveNormalizedSpectrumDisplay),
    plain(&S::rtaColor, &M::rtaColor),
    plain(&S::rtaPeakColor, &M::rtaPeakColor),
    plain(&S::showPeakHold, &M::showPeakHold),
    plain(&S::rtaTimeWeighting, &M::rtaTimeWeighting),
    chosen(&S::targetCurveName, &S::TargetCurveChoice::name, &M::selectedTargetCurveName),
    plain(&S::targetCurveReferenceDB, &M::targetCurveReferenceDB, Possible::isLevel),
    plain(&S::targetCurveReferenceDBFS, &M::targetCurveReferenceDBFS, Possible::isLevel),

    plain(&S::metricMode, &M::metricMode),
    plain(&S::splWeighting, &M::splWeighting),
    plain(&S::splTimeWeighting, &M::splTimeWeighting),
    plain(&S::peakWeighting, &M::peakWeighting)};

constexpr std::tuple leq{
    plain(&S::leqWeighting, &M::leqWeighting),
    plain(&S::leqIntegrationSeconds, &M::leqIntegrationSeconds, Possible::isLeqTime)};

constexpr std::tuple trafficLights{
    plain(&S::trafficLightConfig, &M::trafficLightConfig, Possible::areThresholds),
    plain(&S::trafficLightConfigDBFS, &M::trafficLightConfigDBFS, Possible::areThresholds)};

constexpr std::tuple headline{plain(&S::loudnessReadout, &M::loudnessReadout, isHeadline)};

constexpr std::tuple loudness{
    plain(&S::loudnessTarget, &M::loudnessTarget, Possible::isLoudnessTarget),
    plain(&S::loudnessColors, &M::loudnessColors)};

constexpr std::tuple ranges{repaired(&S::spectrogramRanges, &M::spectrogramRanges, repairedRanges)};

constexpr std::tuple spectrogramAndPanels{
    plain(&S::spectrogramTimeSpanSeconds, &M::spectrogramTimeSpanSeconds,
          Possible::isSpectrogramTimeSpan),
    plain(&S::spectrogramSliceHeightMultiplier, &M::spectrogramSliceHeightMultiplier,
          Possible::isSliceHeight),
    plain(&S::spectrogramColorStops, &M::spectrogramColorStops),
    plain(&S::spectrogramColorPresets, &M::spectrogramColorPresets),
    plain(&S::panelLayout, &M::panelLayout),
    // Brought to the nearest possible one, as a dragged handle is.
    plain(&S::panelSplitFraction, &M::panelSplitFraction, isFinite),
    plain(&S::ringOutEnabled, &M::ringOutEnabled),
    plain(&S::ringOutSensitivity, &M::ringOutSensitivity)};

constexpr std::tuple placementFields{plain(&S::splMeterPlacement, &M::splMeterPlacement),
                                     plain(&S::rtaPlacement, &M::rtaPlacement),
                                     plain(&S::spectrogramPlacement, &M::spectrogramPlacement),
                                     plain(&S::levelHistoryPlacement, &M::levelHistoryPlacement)};

constexpr std::tuple arrangement{
    plain(&S::graphOrientation, &M::graphOrientation),
    plain(&S::graphOrder, &M::graphOrder),
    plain(&S::levelHistoryPosition, &M::levelHistoryPosition),
    plain(&S::splReadoutShowsDBFS, &M::splReadoutShowsDBFS),
    plain(&S::splReadoutShowsClock, &M::splReadoutShowsClock),
    plain(&S::splMeterShowsLevelBar, &M::splMeterShowsLevelBar),
    plain(&S::levelHistoryZoom, &M::levelHistoryZoom),
    plain(&S::levelHistoryShowsMomentary, &M::levelHistoryShowsMomentary)};

template <class... Lines>
void captureAll(const std::tuple<Lines...>& table, const MeterSettings& settings,
                SettingsSnapshot& into) {
    std::apply([&](const auto&... line) { (line.capture(settings, into), ...); }, table);
}

template <class... Lines>
void applyAll(const std::tuple<Lines...>& table, const SettingsSnapshot& snapshot,
              MeterSettings& settings) {
    std::apply([&](const auto&... line) { (line.apply(snapshot, settings), ...); }, table);
}

}  // namespace

SettingsSnapshot SettingsTransfer::capture() const {
    SettingsSnapshot snapshot;
    snapshot.audioInput = {.deviceUID = settings_.selectedDeviceUID(),
                           .channelIndex = settings_.selectedChannelIndex()};
    const auto captureTables = [&](const auto&... table) {
        (captureAll(table, settings_, snapshot), ...);
    };
    captureTables(inputs, channelsAndMeter, leq, trafficLights, headline, loudness, ranges,
                  spectrogramAndPanels, placementFields, arrangement);
    snapshot.calibration->inputGain.reset();  // of the device at this moment
    return snapshot;
}

void SettingsTransfer::apply(const SettingsSnapshot& snapshot, bool includeAudioAndCalibration) {
    if (!includeAudioAndCalibration) {
        if (snapshot.channels) {
            applyChannelDisplaySettings(*snapshot.channels);
        }
    } else {
        if (snapshot.audioInput) {
            applyAudioInput(*snapshot.audioInput);
        }
        applyAll(inputs, snapshot, settings_);
    }
    applyAll(channelsAndMeter, snapshot, settings_);
    applyLeq(snapshot);
    applyAll(trafficLights, snapshot, settings_);
    applyLoudnessReadout(snapshot);
    applyAll(loudness, snapshot, settings_);
    applySpectrogramRanges(snapshot);
    applyAll(spectrogramAndPanels, snapshot, settings_);
    layout_.placeTogether([&] { applyAll(placementFields, snapshot, settings_); });
    applyAll(arrangement, snapshot, settings_);
    run_.restartOnOtherSources();
}

void SettingsTransfer::applyAudioInput(const SettingsSnapshot::AudioInput& input) {
    settings_.selectedDeviceUID.set(input.deviceUID);
    if (input.channelIndex >= 0 && input.channelIndex < devices_.channelCount(input.deviceUID)) {
        settings_.selectedChannelIndex.set(input.channelIndex);
    }
}

// The file's channels may be another machine's: a channel that isn't found by its id is by its
// name, each live one once.
void SettingsTransfer::applyChannelDisplaySettings(const std::vector<ChannelConfig>& channels) {
    auto merged = settings_.extraChannels();
    std::set<UUID> matched;
    for (const ChannelConfig& from :
         std::span(channels).first(std::min(channels.size(), mostExtraChannels))) {
        const auto unmatched = [&](const auto& isTheOne) {
            return std::ranges::find_if(merged, [&](const ChannelConfig& live) {
                return isTheOne(live) && !matched.contains(live.id);
            });
        };
        auto live = unmatched([&](const ChannelConfig& each) { return each.id == from.id; });
        if (live == merged.end()) {
            live = unmatched([&](const ChannelConfig& each) { return each.name == from.name; });
        }
        if (live == merged.end()) {
            continue;
        }
        matched.insert(live->id);
        live->name = from.name;
        live->color = from.color;
        live->ringOutEnabled = from.ringOutEnabled;
        live->spectrogramRanges =
            Possible::repaired(from.spectrogramRanges, live->spectrogramRanges);
        if (from.display) {
            live->display =
                Possible::repaired(*from.display, live->display.value_or(settings_.mainDisplay()));
        } else {
            live->display.reset();
        }
    }
    settings_.extraChannels.set(std::move(merged));
}

void SettingsTransfer::applyLeq(const SettingsSnapshot& snapshot) {
    const auto& seconds = snapshot.leqIntegrationSeconds;
    const bool takesTime = seconds && Possible::isLeqTime(*seconds);
    if (snapshot.leqWeighting || takesTime) {
        settings_.configureLeq(snapshot.leqWeighting.value_or(settings_.leqWeighting()),
                               takesTime ? *seconds : settings_.leqIntegrationSeconds());
    }
}

void SettingsTransfer::applyLoudnessReadout(const SettingsSnapshot& snapshot) {
    if (snapshot.loudnessReadout && isHeadline(*snapshot.loudnessReadout)) {
        applyAll(headline, snapshot, settings_);
        run_.resetMinMax();
    }
}

void SettingsTransfer::applySpectrogramRanges(const SettingsSnapshot& snapshot) {
    if (!snapshot.spectrogramRanges && snapshot.spectrogramFloorDB) {
        settings_.spectrogramRanges.set(Possible::repaired(SpectrogramRanges::fromLegacy(
            snapshot.spectrogramFloorDB, snapshot.spectrogramCeilingDB)));
    }
    applyAll(ranges, snapshot, settings_);
}

}  // namespace TarvaneApp
