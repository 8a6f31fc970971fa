// The integration times that are offered for the user's Leq.
#pragma once

#include <QString>
#include <array>

#include "DSP/Weighting.h"

namespace TarvaneApp {

struct LeqPreset {
    const char* label;
    double seconds;
};

inline constexpr std::array leqPresets{
    LeqPreset{"1 sec", 1.0},        LeqPreset{"10 sec", 10.0},   LeqPreset{"1 min", 60.0},
    LeqPreset{"15 min", 900.0},     LeqPreset{"1 hour", 3600.0}, LeqPreset{"8 hours", 28800.0},
    LeqPreset{"24 hours", 86400.0},
};

/// The user's Leq in words, as "A-weighted, 15 min".
QString leqDescription(TarvaneKit::Weighting weighting, double seconds);

/// The preset's label; for any other time the seconds.
QString leqTimeLabel(double seconds);

}  // namespace TarvaneApp
