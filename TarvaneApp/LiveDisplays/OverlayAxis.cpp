#include "LiveDisplays/OverlayAxis.h"

#include <string>

#include "Engine/MeterEngine.h"
#include "Records/RTAScale.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

std::optional<QString> whyNotOverHistory(const MeterEngine& engine, const UUID& base,
                                         const UUID& overlay) {
    const std::string axis = engine.levelUnitLabel(base);
    const std::string unit = engine.levelUnitLabel(overlay);
    return unit == axis ? std::nullopt
                        : std::optional(
                              QStringLiteral("reads in %1, this history in %2")
                                  .arg(QString::fromStdString(unit), QString::fromStdString(axis)));
}

std::optional<QString> whyNotOverSpectrum(const MeterEngine& engine, const UUID& base,
                                          const UUID& overlay) {
    return engine.rtaScale(base) == RTAScale::dbfs || engine.isCalibrated(overlay)
               ? std::nullopt
               : std::optional(QStringLiteral("not calibrated, this analyzer is in dB SPL"));
}

}  // namespace TarvaneApp
