// What the spectra of a channel need and every channel of one sample rate has alike, so that all
// of them share it: two hundred channels then read one copy out of the processor's cache.
// Constant once made; any thread.
#pragma once

#include <memory>

#include "DSP/OctaveBandAnalyzer.h"
#include "DSP/OctaveFraction.h"
#include "DSP/OctaveNormalization.h"
#include "DSP/SpectrogramRow.h"

namespace TarvaneApp {

struct SpectrumTables {
    explicit SpectrumTables(double sampleRate);

    TarvaneKit::OctaveTilt lineTilt;
    TarvaneKit::SpectrogramColumns spectrogramColumns;
    /// To add to the levels at the lines that the columns read.
    std::vector<double> spectrogramTiltDB;
};

std::shared_ptr<const SpectrumTables> sharedSpectrumTables(double sampleRate);

/// The bands from 20 Hz to 20 kHz for spectra of `ChannelAnalysis::fftSize`.
std::shared_ptr<const TarvaneKit::OctaveBandAnalyzer> sharedBandAnalyzer(
    TarvaneKit::OctaveFraction fraction, double sampleRate);

}  // namespace TarvaneApp
