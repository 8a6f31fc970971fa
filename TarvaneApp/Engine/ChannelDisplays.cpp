#include "Engine/ChannelDisplays.h"

#include <algorithm>

#include "Metering/ChannelProcessor.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::CalibrationSource;
using TarvaneKit::OctaveBand;
using TarvaneKit::RGBAColor;
using TarvaneKit::SPLMetric;
using TarvaneKit::TrafficLightConfig;
using TarvaneKit::UUID;

namespace {

// The audible range, which every frequency axis spans.
constexpr double lowestHz = 20.0;
constexpr double highestHz = 20000.0;

// Closer together, floor and ceiling leave no picture.
constexpr double narrowestRangeDB = 3.0;

SpectrogramRange& ofScale(SpectrogramRanges& ranges, RTAScale scale) {
    return scale == RTAScale::dbfs ? ranges.dbfs : ranges.spl;
}

}  // namespace

ChannelDisplaySettings ChannelDisplays::display(const UUID& id) const {
    const ChannelDisplaySettings* own = ownDisplay(id);
    return own != nullptr ? *own : settings_.mainDisplay();
}

const ChannelDisplaySettings* ChannelDisplays::ownDisplay(const UUID& id) const {
    const ChannelConfig* channel = channels_.extraChannel(id);
    return channel != nullptr && channel->display ? &*channel->display : nullptr;
}

void ChannelDisplays::updateDisplay(const UUID& id,
                                    const std::function<void(ChannelDisplaySettings&)>& edit) {
    const ChannelDisplaySettings before = display(id);
    ChannelDisplaySettings after = before;
    edit(after);
    if (after == before) {
        return;
    }
    if (id != UUID::main()) {
        channels_.updateChannel(id, [&](ChannelConfig& channel) { channel.display = after; });
        return;
    }
    if (after.metricDiffers(before)) {
        pinChannelsFollowingMain(before);
    }
    settings_.assignMainDisplay(after);
}

// A change of the main metric doesn't silently change what the other channels show.
void ChannelDisplays::pinChannelsFollowingMain(const ChannelDisplaySettings& to) {
    auto channels = settings_.extraChannels();
    bool pinned = false;
    for (ChannelConfig& channel : channels) {
        if (!channel.display) {
            channel.display = to;
            pinned = true;
        }
    }
    if (pinned) {
        settings_.extraChannels.set(std::move(channels));
    }
}

SPLMetric ChannelDisplays::meterMetric(const UUID& id) const {
    const ChannelDisplaySettings* own = ownDisplay(id);
    switch (settings_.metricMode.of(own)) {
        case MetricMode::spl:
            return SPLMetric::spl(settings_.splWeighting.of(own),
                                  settings_.splTimeWeighting.of(own));
        case MetricMode::peak:
            return SPLMetric::peak(settings_.peakWeighting.of(own));
        case MetricMode::leq:
            break;
    }
    return SPLMetric::leq(ChannelProcessor::userLeqID);
}

SPLMetric ChannelDisplays::displayedMetric(const UUID& id) const {
    return channels_.measuresLoudness(id) ? SPLMetric::loudness(settings_.loudnessReadout())
                                          : meterMetric(id);
}

SPLMetric ChannelDisplays::historyMetric(const UUID& id) const {
    return channels_.measuresLoudness(id)
               ? SPLMetric::loudness(TarvaneKit::LoudnessMetric::shortTerm)
               : meterMetric(id);
}

const std::vector<OctaveBand>& ChannelDisplays::bands(const UUID& id) const {
    const TarvaneKit::OctaveFraction fraction = settings_.octaveFraction.of(ownDisplay(id));
    auto& bands = bandCache_[fraction];
    if (bands.empty()) {
        bands = TarvaneKit::OctaveBands::standardBands(fraction, lowestHz, highestHz);
    }
    return bands;
}

std::optional<ChannelDisplays::LevelScale> ChannelDisplays::levelScale(const UUID& id) const {
    const auto scale = [](const CalibrationProfile& profile,
                          const std::optional<TarvaneKit::InputGainState>& gain) {
        return LevelScale{profile.calibrationSource() != CalibrationSource::none,
                          profile.broadbandOffsetDB(gain)};
    };
    if (id == UUID::main()) {
        return settings_.mainInputIsDigital()
                   ? LevelScale{}
                   : scale(settings_.calibration(), gains_.currentInputGain());
    }
    const ChannelConfig* channel = channels_.extraChannel(id);
    if (channel == nullptr) {
        return std::nullopt;
    }
    return channel->isDigital || !channel->calibration
               ? LevelScale{}
               : scale(*channel->calibration, gains_.inputGain(*channel));
}

bool ChannelDisplays::isCalibrated(const UUID& id) const {
    return levelScale(id).value_or(LevelScale{}).isCalibrated;
}

RTAScale ChannelDisplays::rtaScale(const UUID& id) const {
    return isCalibrated(id) && !settings_.splReadoutShowsDBFS.of(ownDisplay(id)) ? RTAScale::spl
                                                                                 : RTAScale::dbfs;
}

ReadoutUnit ChannelDisplays::readoutUnit(const UUID& id) const {
    if (channels_.measuresLoudness(id)) {
        return ReadoutUnit::lufs;
    }
    return rtaScale(id) == RTAScale::spl ? ReadoutUnit::spl : ReadoutUnit::dbfs;
}

std::string ChannelDisplays::levelUnitLabel(const UUID& id) const {
    const ReadoutUnit unit = readoutUnit(id);
    return unit == ReadoutUnit::spl ? "dB" : std::string(TarvaneKit::rawValue(unit));
}

double ChannelDisplays::splReadoutDisplayOffsetDB(const UUID& id) const {
    return settings_.splReadoutShowsDBFS.of(ownDisplay(id)) && !channels_.measuresLoudness(id)
               ? levelScale(id).value_or(LevelScale{}).offsetDB
               : 0.0;
}

const TrafficLightConfig& ChannelDisplays::loudnessTrafficLight() const {
    const LoudnessTarget& target = settings_.loudnessTarget();
    const LoudnessColors& colors = settings_.loudnessColors();
    if (!loudnessTrafficLight_ || loudnessTarget_ != target || loudnessColors_ != colors) {
        loudnessTarget_ = target;
        loudnessColors_ = colors;
        loudnessTrafficLight_ = target.trafficLight(colors);
    }
    return *loudnessTrafficLight_;
}

ChannelDisplays::TrafficLight ChannelDisplays::trafficLight(const UUID& id) const {
    const auto scale = levelScale(id);
    if (!scale) {
        return {settings_.trafficLightConfigDBFS(), 0.0};
    }
    if (channels_.measuresLoudness(id)) {
        return {loudnessTrafficLight(), 0.0};
    }
    if (rtaScale(id) == RTAScale::spl) {
        return {settings_.trafficLightConfig(), 0.0};
    }
    // The digital thresholds always judge the digital level.
    return {settings_.trafficLightConfigDBFS(), scale->offsetDB};
}

ActiveTrafficLight ChannelDisplays::activeTrafficLight(const UUID& id) const {
    const TrafficLight light = trafficLight(id);
    return {light.config, light.offsetDB};
}

RGBAColor ChannelDisplays::trafficLightColor(double levelDB, const UUID& id) const {
    const TrafficLight light = trafficLight(id);
    return light.config.color(levelDB - light.offsetDB);
}

SpectrogramRange ChannelDisplays::spectrogramRange(const UUID& id) const {
    const auto config = std::ranges::find(settings_.extraChannels(), id, &ChannelConfig::id);
    SpectrogramRanges ranges = config != settings_.extraChannels().end()
                                   ? config->spectrogramRanges
                                   : settings_.spectrogramRanges();
    return ofScale(ranges, rtaScale(id));
}

SpectrogramRange ChannelDisplays::spectrogramColorMapRange(const UUID& id) const {
    SpectrogramRange range = spectrogramRange(id);
    const auto channel = channels_.channelInfo(id);
    if (channel && rtaScale(id) == RTAScale::dbfs) {
        // The rows of a calibrated channel are in dB SPL.
        const double offsetDB = channel->calibration.broadbandOffsetDB();
        range.floorDB += offsetDB;
        range.ceilingDB += offsetDB;
    }
    return range;
}

SpectrogramRange ChannelDisplays::spectrogramSliderBounds(const UUID& id) const {
    return rtaScale(id) == RTAScale::dbfs ? SpectrogramRange{-140.0, 20.0}
                                          : SpectrogramRange{-60.0, 140.0};
}

void ChannelDisplays::setSpectrogramFloorDB(double floorDB, const UUID& id) {
    editSpectrogramRange(id, [floorDB](SpectrogramRange& range) {
        range.floorDB = std::min(floorDB, range.ceilingDB - narrowestRangeDB);
    });
}

void ChannelDisplays::setSpectrogramCeilingDB(double ceilingDB, const UUID& id) {
    editSpectrogramRange(id, [ceilingDB](SpectrogramRange& range) {
        range.ceilingDB = std::max(ceilingDB, range.floorDB + narrowestRangeDB);
    });
}

void ChannelDisplays::editSpectrogramRange(const UUID& id,
                                           const std::function<void(SpectrogramRange&)>& edit) {
    const RTAScale scale = rtaScale(id);
    if (id == UUID::main()) {
        SpectrogramRanges ranges = settings_.spectrogramRanges();
        edit(ofScale(ranges, scale));
        settings_.spectrogramRanges.set(ranges);
    } else {
        channels_.updateChannel(
            id, [&](ChannelConfig& config) { edit(ofScale(config.spectrogramRanges, scale)); });
    }
}

}  // namespace TarvaneApp
