// Between which levels a channel's spectrogram runs through its colours: one range per unit, so
// that a change of unit brings back the range last used there.

#include <algorithm>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

// Closer together, floor and ceiling leave no picture.
constexpr double narrowestRangeDB = 3.0;

SpectrogramRange& ofScale(SpectrogramRanges& ranges, RTAScale scale) {
    return scale == RTAScale::dbfs ? ranges.dbfs : ranges.spl;
}

}  // namespace

SpectrogramRange MeterEngine::spectrogramRange(const UUID& id) const {
    const auto config = std::ranges::find(extraChannels(), id, &ChannelConfig::id);
    SpectrogramRanges ranges =
        config != extraChannels().end() ? config->spectrogramRanges : spectrogramRanges();
    return ofScale(ranges, rtaScale(id));
}

SpectrogramRange MeterEngine::spectrogramColorMapRange(const UUID& id) const {
    SpectrogramRange range = spectrogramRange(id);
    const auto channel = channelInfo(id);
    if (channel && rtaScale(id) == RTAScale::dbfs) {
        // The rows of a calibrated channel are in dB SPL.
        const double offsetDB = channel->calibration.broadbandOffsetDB();
        range.floorDB += offsetDB;
        range.ceilingDB += offsetDB;
    }
    return range;
}

SpectrogramRange MeterEngine::spectrogramSliderBounds(const UUID& id) const {
    return rtaScale(id) == RTAScale::dbfs ? SpectrogramRange{-140.0, 20.0}
                                          : SpectrogramRange{-60.0, 140.0};
}

void MeterEngine::setSpectrogramFloorDB(double floorDB, const UUID& id) {
    editSpectrogramRange(id, [floorDB](SpectrogramRange& range) {
        range.floorDB = std::min(floorDB, range.ceilingDB - narrowestRangeDB);
    });
}

void MeterEngine::setSpectrogramCeilingDB(double ceilingDB, const UUID& id) {
    editSpectrogramRange(id, [ceilingDB](SpectrogramRange& range) {
        range.ceilingDB = std::max(ceilingDB, range.floorDB + narrowestRangeDB);
    });
}

void MeterEngine::editSpectrogramRange(const UUID& id,
                                       const std::function<void(SpectrogramRange&)>& edit) {
    const RTAScale scale = rtaScale(id);
    if (id == UUID::main()) {
        SpectrogramRanges ranges = spectrogramRanges();
        edit(ofScale(ranges, scale));
        spectrogramRanges.set(ranges);
    } else {
        updateChannel(
            id, [&](ChannelConfig& config) { edit(ofScale(config.spectrogramRanges, scale)); });
    }
}

}  // namespace TarvaneApp
