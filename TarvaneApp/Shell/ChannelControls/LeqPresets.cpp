#include "Shell/ChannelControls/LeqPresets.h"

#include <algorithm>

#include "Displays/RawText.h"

namespace TarvaneApp {

QString leqDescription(TarvaneKit::Weighting weighting, double seconds) {
    return QStringLiteral("%1-weighted, %2").arg(rawText(weighting), leqTimeLabel(seconds));
}

QString leqTimeLabel(double seconds) {
    const auto preset = std::ranges::find(leqPresets, seconds, &LeqPreset::seconds);
    return preset != leqPresets.end() ? QString::fromLatin1(preset->label)
                                      : QString::number(seconds, 'g', 6) + QStringLiteral(" sec");
}

}  // namespace TarvaneApp
