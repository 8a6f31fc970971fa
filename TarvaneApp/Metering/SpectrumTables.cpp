#include "Metering/SpectrumTables.h"

#include <utility>

#include "Core/SharedTables.h"
#include "Metering/ChannelAnalysis.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBandAnalyzer;
using TarvaneKit::OctaveBands;
using TarvaneKit::OctaveFraction;
using TarvaneKit::OctaveTilt;

namespace {

constexpr double lowestHz = 20.0;
constexpr double highestHz = 20000.0;

}  // namespace

SpectrumTables::SpectrumTables(double sampleRate)
    : lineTilt(ChannelAnalysis::fftSize / 2, ChannelAnalysis::fftSize, sampleRate),
      spectrogramColumns(TarvaneKit::spectrogramFrequencies(), sampleRate,
                         ChannelAnalysis::spectrogramFFTSize) {
    const OctaveTilt tilt(ChannelAnalysis::spectrogramFFTSize / 2,
                          ChannelAnalysis::spectrogramFFTSize, sampleRate);
    for (const std::int32_t line : spectrogramColumns.lines()) {
        spectrogramTiltDB.push_back(tilt.levelsDB()[static_cast<std::size_t>(line)]);
    }
}

std::shared_ptr<const SpectrumTables> sharedSpectrumTables(double sampleRate) {
    static TarvaneKit::SharedTables<double, SpectrumTables> shared;
    return shared.get(sampleRate,
                      [&] { return std::make_shared<const SpectrumTables>(sampleRate); });
}

std::shared_ptr<const OctaveBandAnalyzer> sharedBandAnalyzer(OctaveFraction fraction,
                                                             double sampleRate) {
    static TarvaneKit::SharedTables<std::pair<OctaveFraction, double>, OctaveBandAnalyzer> shared;
    return shared.get({fraction, sampleRate}, [&] {
        return std::make_shared<const OctaveBandAnalyzer>(
            OctaveBands::standardBands(fraction, lowestHz, highestHz), ChannelAnalysis::fftSize,
            sampleRate);
    });
}

}  // namespace TarvaneApp
