// Which channels can be drawn over another one's graph: those whose levels mean the same on its
// axis. A line in another unit would be a false one. Main thread.
#pragma once

#include <QString>
#include <optional>

#include "Core/UUID.h"

namespace TarvaneApp {

class MeterEngine;

/// Why a channel is not drawn over the base channel's graph, as a menu says it; absent where it is.
std::optional<QString> whyNotOverHistory(const MeterEngine& engine, const TarvaneKit::UUID& base,
                                         const TarvaneKit::UUID& overlay);
/// An analyzer in dBFS shows every channel, one in dB SPL those that are calibrated.
std::optional<QString> whyNotOverSpectrum(const MeterEngine& engine, const TarvaneKit::UUID& base,
                                          const TarvaneKit::UUID& overlay);

}  // namespace TarvaneApp
