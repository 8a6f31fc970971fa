// An amplitude spectrum to a level per fractional-octave band: the bars of the analyzer.
//
// Every bin is a rectangle of power over its own width, shared out among the bands in proportion
// to the overlap. So a band much narrower than a bin still reads, and band levels are sums of
// power, not densities: half the width on a broadband sound is 3 dB less.
//
// Which bin gives how much to which band depends on the table alone and is computed once.
// Constant after construction; any thread.
#pragma once

#include <span>
#include <vector>

#include "DSP/Kernels/BandKernel.h"
#include "DSP/OctaveBands.h"

namespace TarvaneKit {

class OctaveBandAnalyzer {
  public:
    /// `bands` ascending; `fftSize` above 0; `sampleRate` finite and above 0.
    OctaveBandAnalyzer(std::vector<OctaveBand> bands, int fftSize, double sampleRate);

    const std::vector<OctaveBand>& bands() const { return bands_; }
    int bandCount() const { return static_cast<int>(bands_.size()); }

    /// Power per band, in the order of `bands`, of magnitudes whose entry k lies at k sampleRate /
    /// fftSize, finite. What bins are missing count as silent. Full scale is 1.0; no floor.
    void bandPowers(std::span<const float> magnitudes, std::span<double> powers) const;
    /// The same in dB full scale, -240 at the least.
    void bandLevels(std::span<const float> magnitudes, std::span<double> levelsDB) const;
    std::vector<double> bandLevels(std::span<const float> magnitudes) const;

  private:
    std::vector<OctaveBand> bands_;
    BandTable table_;
};

}  // namespace TarvaneKit
