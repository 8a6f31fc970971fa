// How the ramp that colours a spectrogram is edited, and how ramps are kept under names.
#pragma once

#include <vector>

#include "Core/RGBAColor.h"
#include "Records/SpectrogramColorStop.h"
#include "Records/SpectrogramRanges.h"

namespace TarvaneApp::SpectrogramColorRamp {

/// In the order of their positions; those on the same one keep their order.
std::vector<SpectrogramColorStop> sorted(std::vector<SpectrogramColorStop> stops);

/// The level at a position of the ramp, and the other way round; positions are within 0 to 1.
double levelDB(double position, const SpectrogramRange& range);
double position(double levelDB, const SpectrogramRange& range);

/// The ramp's colour at 0 to 1, between two stops in proportion; white without stops, and opaque
/// always.
TarvaneKit::RGBAColor colorAt(double t, const std::vector<SpectrogramColorStop>& sortedStops);

/// With one more stop in the middle of the widest gap between two, the lowest of equal ones, in
/// the colour that the ramp has there: the picture stays the same. A single stop's gap is the way
/// to the farther end of the ramp.
std::vector<SpectrogramColorStop> withStopInWidestGap(std::vector<SpectrogramColorStop> stops);

/// The same positions and colours in the same order, whatever the ids.
bool isSameRamp(const std::vector<SpectrogramColorStop>& a,
                const std::vector<SpectrogramColorStop>& b);

/// With the ramp under that name, in the place of a preset that has it, else as the last one.
std::vector<SpectrogramColorPreset> withPreset(std::vector<SpectrogramColorPreset> presets,
                                               SpectrogramColorPreset preset);

}  // namespace TarvaneApp::SpectrogramColorRamp
