#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

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

}  // namespace TarvaneApp
