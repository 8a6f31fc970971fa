// The sums of power behind a band table's levels. Called by OctaveBandAnalyzer.
#pragma once

#include <vector>

namespace TarvaneKit {

/// Which bins share their power with a band, and in what proportion.
struct BandShares {
    int firstBin = 0;
    int binCount = 0;
    int firstWeight = 0;  ///< where the band's `binCount` proportions begin
};

/// powers[band] = sum over the band's bins of proportion magnitude^2, in 64 bits. Bins from
/// `magnitudeCount` on have no power.
void sumBandPowers(const std::vector<BandShares>& bands, const double* weights,
                   const float* magnitudes, int magnitudeCount, double* powers);

}  // namespace TarvaneKit
