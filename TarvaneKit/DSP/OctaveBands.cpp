#include "DSP/OctaveBands.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

constexpr double referenceHz = 1000.0;
// How far a table reaches past its nominal range, so that 20 Hz and 20 kHz get their third-octave
// bands, whose exact centres lie at 19.7 Hz and 20.16 kHz.
constexpr double rangeMargin = 1.05;

std::string bandLabel(double centerFrequencyHz) {
    if (centerFrequencyHz < 1000.0) {
        return fmt::format("{:.0f}", std::round(centerFrequencyHz));
    }
    const double kilohertz = centerFrequencyHz / 1000.0;
    return kilohertz == std::floor(kilohertz) ? fmt::format("{:.0f}k", kilohertz)
                                              : fmt::format("{:.1f}k", kilohertz);
}

}  // namespace

std::vector<OctaveBand> OctaveBands::standardBands(OctaveFraction fraction, double minHz,
                                                   double maxHz) {
    TARVANE_PRECONDITION(minHz > 0.0 && std::isfinite(maxHz));
    const double bandsPerOctave = rawValue(fraction);
    const double halfBand = std::exp2(1.0 / (2.0 * bandsPerOctave));
    const double upperLimitHz = maxHz * rangeMargin;
    const double lowerLimitHz = minHz / rangeMargin;
    const auto center = [&](int n) { return referenceHz * std::exp2(n / bandsPerOctave); };

    std::vector<OctaveBand> bands;
    const auto add = [&](double centerHz) {
        if (centerHz >= lowerLimitHz && centerHz <= upperLimitHz) {
            bands.push_back(
                {centerHz, centerHz / halfBand, halfBand * centerHz, bandLabel(centerHz)});
        }
    };
    for (int n = 0; center(n) <= upperLimitHz; ++n) {
        add(center(n));
    }
    for (int n = -1; center(n) >= lowerLimitHz; --n) {
        add(center(n));
    }
    std::ranges::sort(bands, {}, &OctaveBand::centerFrequencyHz);
    return bands;
}

}  // namespace TarvaneKit
