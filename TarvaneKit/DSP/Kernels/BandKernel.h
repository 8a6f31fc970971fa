// The sums of power behind a band table's levels. Called by OctaveBandAnalyzer.
#pragma once

#include <span>
#include <vector>

namespace TarvaneKit {

/// Which bins share their power with which band, and in what proportion.
class BandTable {
  public:
    struct Band {
        int firstBin;
        int binCount;
        /// Where its proportions begin, and how many there are: zeros fill them up.
        int firstWeight;
        int weightCount;
    };

    /// The next band: one proportion for each bin from `firstBin` on.
    void add(int firstBin, std::span<const double> proportions);

    std::span<const Band> bands() const { return bands_; }
    std::span<const double> weights() const { return weights_; }
    /// So many bands at the head of the table have two weights each.
    int narrowCount() const { return narrowCount_; }

  private:
    std::vector<Band> bands_;
    std::vector<double> weights_;
    int narrowCount_ = 0;
};

/// powers[band] = sum over the band's bins of proportion magnitude^2, in 64 bits; one of each
/// band. Magnitudes are finite; bins behind the last one have no power.
void sumBandPowers(const BandTable& table, std::span<const float> magnitudes,
                   std::span<double> powers);

}  // namespace TarvaneKit
