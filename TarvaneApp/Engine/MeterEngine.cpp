#include "MeterEngine.h"

#include <cmath>

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::UUID;

namespace {

constexpr double largestOffsetDB = 300.0;
constexpr double largestReferenceSPL = 200.0;
constexpr double usualReferenceSPL = 94.0;

// A stored value that would break every reading is dropped; the rest of the profile stays.
CalibrationProfile sanitizedCalibration(CalibrationProfile profile) {
    if (profile.reference && !(std::abs(profile.reference->offsetDB) <= largestOffsetDB)) {
        profile.reference.reset();
    }
    if (!(profile.micCalFileReferenceSPL >= 0.0 &&
          profile.micCalFileReferenceSPL <= largestReferenceSPL)) {
        profile.micCalFileReferenceSPL = usualReferenceSPL;
    }
    return profile;
}

// One range for both units was stored once.
SpectrogramRanges migratedSpectrogramRanges(const Persistence& persistence) {
    return SpectrogramRanges::fromLegacy(
        persistence.load<double>(Persistence::Key::spectrogramFloorDB),
        persistence.load<double>(Persistence::Key::spectrogramCeilingDB));
}

}  // namespace

MeterEngine::MeterEngine(const Environment& environment, QObject* parent)
    : QObject(parent),
      settings_(environment.store),
      audio_(environment.audio),
      clock_(environment.clock),
      displayTimer_(environment.displayTimer) {
    meterChannels_.emplace(UUID::main(), std::make_unique<MeterChannel>(UUID::main()));
    calibration.setSanitizer(sanitizedCalibration);
    spectrogramRanges.setMigration(migratedSpectrogramRanges);
    settings_.loadAll();
    attachSettingEffects();
    audio_.setDevicesChangedHandler([this] { mainThread_.post([this] { followDevices(); }); });
}

MeterEngine::~MeterEngine() {
    audio_.setDevicesChangedHandler(nullptr);
    stop();
}

const CalibrationProfile& MeterEngine::uncalibrated() {
    static const CalibrationProfile profile{.name = "Uncalibrated",
                                            .micCalFile = {},
                                            .reference = {},
                                            .micCalFileReferenceSPL = usualReferenceSPL,
                                            .inputGain = {}};
    return profile;
}

}  // namespace TarvaneApp
