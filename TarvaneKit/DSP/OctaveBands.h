// The bands of the real-time analyzer: base-2 centres from 1000 Hz, unrounded (IEC 61260-1 names
// base 10 as the preferred system; base 2 is what octave means on an instrument and a desk).
#pragma once

#include <string>
#include <vector>

#include "DSP/OctaveFraction.h"

namespace TarvaneKit {

struct OctaveBand {
    double centerFrequencyHz = 0.0;
    double lowerEdgeHz = 0.0;
    double upperEdgeHz = 0.0;
    /// For an axis: "31", "1k", "1.3k". Not unique in a fine table.
    std::string label;

    bool operator==(const OctaveBand&) const = default;
};

struct OctaveBands {
    OctaveBands() = delete;

    /// Ascending; every centre from `minHz` / 1.05 to `maxHz` * 1.05. `minHz` is above 0, `maxHz`
    /// finite.
    static std::vector<OctaveBand> standardBands(OctaveFraction fraction, double minHz,
                                                 double maxHz);
};

}  // namespace TarvaneKit
