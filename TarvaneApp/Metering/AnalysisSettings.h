// What goes with a tick into the analysis: values alone, made on the main thread.
#pragma once

#include <memory>

#include "Calibration/CalibrationProfile.h"
#include "Core/Date.h"
#include "DSP/OctaveFraction.h"
#include "DSP/RingOutSensitivity.h"
#include "DSP/Weighting.h"
#include "Metering/ChannelFrame.h"

namespace TarvaneApp {

class ChannelProcessor;

/// One per tick. The main thread never touches analysis state: it raises a counter, and the
/// analysis that sees a new value resets itself.
struct AnalysisSettings {
    /// Of the tick, on a clock that doesn't step. Elapsed times are differences of it.
    TarvaneKit::Date now;
    TarvaneKit::TimeWeighting rtaTimeWeighting = TarvaneKit::TimeWeighting::fast;
    int smoothingGeneration = 0;    ///< all averages start over
    int peakHoldGeneration = 0;     ///< all holds start over
    int timingGeneration = 0;       ///< what passed since the last analysis doesn't count
    int calibrationGeneration = 0;  ///< the correction over frequency is computed anew
};

/// One per channel and tick.
struct ChannelAnalysisRequest {
    std::shared_ptr<ChannelProcessor> processor;
    /// The profile in force; absent counts as uncalibrated.
    std::shared_ptr<const TarvaneKit::CalibrationProfile> calibration;
    /// Some display shows the channel's spectrum, its spectrogram.
    bool wantsRTA = false;
    bool wantsSpectrogram = false;
    bool ringOutEnabled = false;
    TarvaneKit::OctaveFraction octaveFraction = TarvaneKit::OctaveFraction::thirdOctave;
    /// Lines are shown as energy per octave.
    bool octaveNormalized = false;
    TarvaneKit::RingOutSensitivity ringOutSensitivity = TarvaneKit::RingOutSensitivity::normal;
};

}  // namespace TarvaneApp
