#include "Records/ChannelConfig.h"

#include <cmath>
#include <limits>

namespace TarvaneApp {

namespace {

// The smallest range that is taken over: a narrower one would draw every level alike.
constexpr double minimumRangeDB = 3.0;

// Ceilings of dB SPL ranges lie well above this, those of dBFS ranges at or below 0.
constexpr double highestDBFSCeilingDB = 20.0;

bool isPresent(const TarvaneKit::JSONValue& object, std::string_view key) {
    const TarvaneKit::JSONValue* value = object.member(key);
    return value != nullptr && !value->isNull();
}

std::optional<double> number(const TarvaneKit::JSONValue& object, std::string_view key) {
    const TarvaneKit::JSONValue* value = object.member(key);
    return value != nullptr ? TarvaneKit::decodeJSON<double>(
                                  *value, TarvaneKit::DateForm::secondsSinceReferenceDate)
                            : std::nullopt;
}

}  // namespace

SpectrogramRanges SpectrogramRanges::fromLegacy(std::optional<double> floorDB,
                                                std::optional<double> ceilingDB) {
    SpectrogramRanges ranges;
    if (!floorDB || !ceilingDB || !std::isfinite(*floorDB) || !std::isfinite(*ceilingDB) ||
        *floorDB + minimumRangeDB > *ceilingDB) {
        return ranges;
    }
    (*ceilingDB > highestDBFSCeilingDB ? ranges.spl : ranges.dbfs) = {*floorDB, *ceilingDB};
    return ranges;
}

}  // namespace TarvaneApp

void TarvaneKit::Coding<TarvaneApp::ChannelConfig>::complete(Record& record,
                                                             const JSONValue& object) {
    using TarvaneApp::SpectrogramRanges;
    if (!TarvaneApp::isPresent(object, "ringOutEnabled")) {
        record.ringOutEnabled = !record.isDigital;
    }
    if (!TarvaneApp::isPresent(object, "rightChannelIndex") &&
        record.channelIndex < std::numeric_limits<int>::max()) {
        record.rightChannelIndex = record.channelIndex + 1;
    }
    if (!TarvaneApp::isPresent(object, "spectrogramRanges")) {
        record.spectrogramRanges = SpectrogramRanges::fromLegacy(
            TarvaneApp::number(object, SpectrogramRanges::LegacyKeys::floorDB),
            TarvaneApp::number(object, SpectrogramRanges::LegacyKeys::ceilingDB));
    }
}
