#include "DSP/PeakPicker.h"

#include <algorithm>
#include <cmath>
#include <compare>

#include "Core/Contract.h"
#include "DSP/Kernels/PeakSearchKernel.h"

namespace TarvaneKit::PeakPicker {

namespace {

constexpr int minBinCount = 5;
// Out of reach at either end of the spectrum, whatever the configuration says.
constexpr int marginBins = 2;
constexpr double powerFloor = 1e-12;  // -120 dB
// How much of the prominence a peak's neighbours must show. A lone bin is no tone: a windowed
// tone always has neighbours.
constexpr double neighbourShare = 0.5;
constexpr double bandwidthDropDB = 3.0;

// To the nearest whole number of bins, half away from zero, from 0 to `largest`.
int binsOf(double frequencyHz, double binWidthHz, int largest) {
    const double bins = std::round(frequencyHz / binWidthHz);
    if (!(bins > 0.0)) {
        return 0;
    }
    return bins < largest ? static_cast<int>(bins) : largest;
}

PeakSearch searchOf(int binCount, double binWidthHz, const Configuration& configuration) {
    const auto bins = [&](double frequencyHz) { return binsOf(frequencyHz, binWidthHz, binCount); };
    return {.binCount = binCount,
            .windowBins = std::max(bins(configuration.noiseFloorWindowHz), 1),
            .guardBins = bins(configuration.noiseFloorGuardHz),
            .firstBin = std::max(bins(configuration.minFrequencyHz), marginBins),
            .lastBin = std::min(binCount - 1 - marginBins, bins(configuration.maxFrequencyHz)),
            .minLevelDB = configuration.minPeakLevelDB,
            .prominence = std::pow(10.0, configuration.prominenceThresholdDB / 10.0)};
}

PeakSearchBuffers buffersIn(Workspace& workspace, int binCount) {
    const auto bins = static_cast<std::size_t>(binCount);
    if (workspace.power.size() < bins) {
        workspace.power.resize(bins);
        workspace.sums.resize(bins + 1);
        workspace.floorSums.resize(bins + 1);
        workspace.candidates.resize(bins);
    }
    return {.power = workspace.power.data(),
            .sums = workspace.sums.data(),
            .floorSums = workspace.floorSums.data(),
            .candidates = workspace.candidates.data()};
}

// A bin with its neighbours.
struct Top {
    double left;
    double center;
    double right;
};

bool isPeak(const Top& top, double floorDB, const Configuration& configuration) {
    const double neighboursFloorDB = floorDB + configuration.prominenceThresholdDB * neighbourShare;
    // Of a flat top the left bin wins.
    return top.left < top.center && !(top.right > top.center) &&
           !(configuration.minPeakLevelDB > top.center) &&
           !(configuration.prominenceThresholdDB > top.center - floorDB) &&
           !(neighboursFloorDB > top.left) && !(neighboursFloorDB > top.right);
}

TonalPeak interpolated(const Top& top, double floorDB, int bin, double binWidthHz) {
    double position = bin;
    double levelDB = top.center;
    const double curvature = top.left - 2.0 * top.center + top.right;
    if (curvature != 0.0) {
        const double delta = 0.5 * (top.left - top.right) / curvature;
        position += delta;
        levelDB -= 0.25 * (top.left - top.right) * delta;
    }
    return {.frequencyHz = binWidthHz * position,
            .levelDB = levelDB,
            .noiseFloorDB = floorDB,
            .binIndex = bin};
}

// Of equally prominent peaks the lower one comes first. The order is total, whatever the levels.
bool isMoreProminent(const TonalPeak& a, const TonalPeak& b) {
    const auto order = std::strong_order(b.prominenceDB(), a.prominenceDB());
    return order == 0 ? a.binIndex < b.binIndex : order < 0;
}

void keepMostProminent(std::vector<TonalPeak>& peaks, int maxPeaks) {
    const auto kept = static_cast<std::size_t>(maxPeaks);
    if (peaks.size() <= kept) {
        return;
    }
    std::ranges::nth_element(peaks, peaks.begin() + maxPeaks, isMoreProminent);
    peaks.resize(kept);
    // Two local maxima lie at least two bins apart and interpolation moves each by half a bin at
    // most, so that bins are in the order of frequencies.
    std::ranges::sort(peaks, {}, &TonalPeak::binIndex);
}

// From the peak outward in steps of `direction`: where the skirt crosses `targetDB`, in bins.
std::optional<double> skirtCrossing(std::span<const double> spectrumDB, int peakBin,
                                    double targetDB, int direction, int maxSearchBins) {
    const int binCount = static_cast<int>(spectrumDB.size());
    int bin = peakBin;
    for (int step = 0; step < maxSearchBins; ++step) {
        const int next = bin + direction;
        if (next < 0 || next >= binCount) {
            return std::nullopt;
        }
        const double outer = spectrumDB[static_cast<std::size_t>(next)];
        const double inner = spectrumDB[static_cast<std::size_t>(bin)];
        if (outer <= targetDB) {
            return outer == inner ? next : bin + direction * (inner - targetDB) / (inner - outer);
        }
        bin = next;
    }
    return std::nullopt;
}

}  // namespace

std::vector<TonalPeak> findPeaks(std::span<const double> spectrumDB, double sampleRate, int fftSize,
                                 const Configuration& configuration) {
    Workspace workspace;
    std::vector<TonalPeak> peaks;
    findPeaks({.levelsDB = spectrumDB}, sampleRate, fftSize, configuration, workspace, peaks);
    return peaks;
}

void findPeaks(const LineSpectrum& spectrum, double sampleRate, int fftSize,
               const Configuration& configuration, Workspace& workspace,
               std::vector<TonalPeak>& peaks) {
    const std::span<const double> levels = spectrum.levelsDB;
    TARVANE_PRECONDITION(configuration.maxPeaks >= 0);
    TARVANE_PRECONDITION(spectrum.magnitudes.empty() ||
                         spectrum.magnitudes.size() == levels.size());
    peaks.clear();
    const int binCount = static_cast<int>(levels.size());
    const double binWidthHz = sampleRate / fftSize;
    if (!(binWidthHz > 0.0) || binCount < minBinCount) {
        return;
    }
    const PeakSearch search = searchOf(binCount, binWidthHz, configuration);
    if (search.firstBin >= search.lastBin) {
        return;
    }
    const PeakSearchBuffers buffers = buffersIn(workspace, binCount);
    const float* magnitudes = spectrum.magnitudes.empty() ? nullptr : spectrum.magnitudes.data();
    const int count = findPeakCandidates(search, levels.data(), magnitudes, buffers);
    for (const int bin : std::span(workspace.candidates).first(static_cast<std::size_t>(count))) {
        const auto i = static_cast<std::size_t>(bin);
        const Top top{.left = levels[i - 1], .center = levels[i], .right = levels[i + 1]};
        const double power = ringAverage(search, buffers.floorSums, bin);
        const double floorDB = 10.0 * std::log10(power > powerFloor ? power : powerFloor);
        if (isPeak(top, floorDB, configuration)) {
            peaks.push_back(interpolated(top, floorDB, bin, binWidthHz));
        }
    }
    keepMostProminent(peaks, configuration.maxPeaks);
}

std::optional<double> measureBandwidth(std::span<const double> spectrumDB, int peakBin,
                                       double peakLevelDB, double binWidthHz, int maxSearchBins) {
    if (peakBin < 0 || peakBin >= static_cast<int>(spectrumDB.size()) || !(binWidthHz > 0.0) ||
        maxSearchBins < 1) {
        return std::nullopt;
    }
    const double targetDB = peakLevelDB - bandwidthDropDB;
    const auto left = skirtCrossing(spectrumDB, peakBin, targetDB, -1, maxSearchBins);
    const auto right = skirtCrossing(spectrumDB, peakBin, targetDB, 1, maxSearchBins);
    if (!left || !right || !(*left < *right)) {
        return std::nullopt;
    }
    return binWidthHz * (*right - *left);
}

}  // namespace TarvaneKit::PeakPicker
