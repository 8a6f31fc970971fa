#include "DSP/OctaveBandAnalyzer.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"
#include "DSP/SpectrumSmoothing.h"

namespace TarvaneKit {

namespace {

struct Bin {
    double lowHz;
    double highHz;
};

// The proportion of the bin's power that falls into the band.
double overlap(const Bin& bin, const OctaveBand& band) {
    const double lowHz = std::max(bin.lowHz, band.lowerEdgeHz);
    const double highHz = std::min(bin.highHz, band.upperEdgeHz);
    return lowHz < highHz ? (highHz - lowHz) / (bin.highHz - bin.lowHz) : 0.0;
}

}  // namespace

OctaveBandAnalyzer::OctaveBandAnalyzer(std::vector<OctaveBand> bands, int fftSize,
                                       double sampleRate)
    : bands_(std::move(bands)) {
    TARVANE_PRECONDITION(fftSize > 0);
    TARVANE_PRECONDITION(sampleRate > 0.0 && std::isfinite(sampleRate));
    const double binWidthHz = sampleRate / fftSize;
    const auto bin = [&](int k) {
        const double centerHz = binWidthHz * k;
        return Bin{centerHz - binWidthHz / 2.0, centerHz + binWidthHz / 2.0};
    };
    int first = 0;  // bins below this one lie below the band, and so below all that follow
    std::vector<double> proportions;
    for (const OctaveBand& band : bands_) {
        while (bin(first).highHz <= band.lowerEdgeHz) {
            ++first;
        }
        proportions.clear();
        for (int k = first; bin(k).lowHz < band.upperEdgeHz; ++k) {
            proportions.push_back(overlap(bin(k), band));
        }
        table_.add(first, proportions);
    }
}

void OctaveBandAnalyzer::bandPowers(std::span<const float> magnitudes,
                                    std::span<double> powers) const {
    sumBandPowers(table_, magnitudes, powers);
}

void OctaveBandAnalyzer::bandLevels(std::span<const float> magnitudes,
                                    std::span<double> levelsDB) const {
    bandPowers(magnitudes, levelsDB);
    levelsOfPowers(levelsDB, bandFloor, levelsDB);
}

std::vector<double> OctaveBandAnalyzer::bandLevels(std::span<const float> magnitudes) const {
    std::vector<double> levelsDB(bands_.size());
    bandLevels(magnitudes, levelsDB);
    return levelsDB;
}

}  // namespace TarvaneKit
