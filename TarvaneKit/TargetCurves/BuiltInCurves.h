// The target curves that the program knows, in the order of their menu.
#pragma once

#include <string_view>
#include <vector>

#include "TargetCurves/TargetCurve.h"

namespace TarvaneKit::BuiltInCurves {

const TargetCurve& flat();

/// The house curve of cinemas: flat to 2 kHz, then falling by 3 dB per octave (SMPTE ST 202,
/// ISO 2969).
const TargetCurve& xCurve();

const std::vector<TargetCurve>& all();

/// The curve of exactly that name; empty for any other.
std::optional<TargetCurve> named(std::string_view name);

}  // namespace TarvaneKit::BuiltInCurves
