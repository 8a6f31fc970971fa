// The peak search's passes over a whole spectrum, on the processor's vector unit: powers, the
// noise floor's two box averages, and the bins that can be peaks at all. What is left, a few
// dozen bins, the peak picker tests one by one. PeakSearchKernel.cpp argues the method.
// Called on the analysis queue. No allocation; as fast as the spectrum is long.
#pragma once

#include <algorithm>

namespace TarvaneKit {

struct PeakSearch {
    int binCount = 0;
    /// Half width of the floor's box and of the hole in it; at least 1 and 0.
    int windowBins = 1;
    int guardBins = 0;
    /// Searched, both ends included; from 1 to binCount - 2.
    int firstBin = 1;
    int lastBin = 1;
    double minLevelDB = 0.0;
    /// Least ratio of a peak's power to its floor's.
    double prominence = 1.0;

    /// Bins behind this one reach neither a searched bin nor its floor.
    int usedBinCount() const { return std::min(binCount, lastBin + 2 * windowBins + 1); }
};

/// Mean of the box about `bin`, cut at the ends of the spectrum, without the hole; of the whole
/// box where the hole swallows it. `sums[k]` is the sum of the first k values.
inline double ringAverage(const PeakSearch& search, const double* sums, int bin) {
    const int last = search.binCount - 1;
    const auto sumOfRange = [&](int from, int to) { return sums[to + 1] - sums[from]; };
    const int outerLow = std::max(bin - search.windowBins, 0);
    const int outerHigh = std::min(bin + search.windowBins, last);
    const int innerLow = std::max(bin - search.guardBins, 0);
    const int innerHigh = std::min(bin + search.guardBins, last);
    const int outerCount = outerHigh - outerLow + 1;
    const int ringCount = outerCount - (innerHigh - innerLow + 1);
    const double outerSum = sumOfRange(outerLow, outerHigh);
    return ringCount >= 1 ? (outerSum - sumOfRange(innerLow, innerHigh)) / ringCount
                          : outerSum / outerCount;
}

/// Where a search's passes leave their results.
struct PeakSearchBuffers {
    double* power = nullptr;      ///< [bin], `binCount` of them
    double* sums = nullptr;       ///< [bin + 1], sums of the powers
    double* floorSums = nullptr;  ///< [bin + 1], sums of the powers with the peaks taken out
    int* candidates = nullptr;    ///< room for each bin searched
};

/// Fills the buffers and returns the number of candidates, ascending: all searched bins that are
/// local maxima, loud enough and, but for a slack of 0.1 %, prominent enough. The powers come
/// from `magnitudes`, raised to 1e-9, or from the levels when that is null.
int findPeakCandidates(const PeakSearch& search, const double* levelsDB, const float* magnitudes,
                       const PeakSearchBuffers& buffers);

}  // namespace TarvaneKit
