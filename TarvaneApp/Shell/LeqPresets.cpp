#include "LeqPresets.h"

#include <algorithm>

namespace TarvaneApp {

QString leqTimeLabel(double seconds) {
    const auto preset = std::ranges::find(leqPresets, seconds, &LeqPreset::seconds);
    return preset != leqPresets.end() ? QString::fromLatin1(preset->label)
                                      : QString::number(seconds, 'g', 6) + QStringLiteral(" sec");
}

}  // namespace TarvaneApp
