// What one tick's analysis of one channel gives back to the main thread.
#pragma once

#include <optional>
#include <vector>

#include "DSP/RingAlert.h"

namespace TarvaneApp {

struct ChannelFrame {
    /// Levels in dB full scale, or dB SPL on a calibrated channel.
    struct RTA {
        std::vector<double> bandLevelsDB;    ///< averaged, one per band
        std::vector<double> bandPeakHoldDB;  ///< one per band
        std::vector<double> lineSpectrumDB;  ///< averaged, line i at i sampleRate / 4096
        std::vector<double> linePeakHoldDB;  ///< one per line
        /// Absent when the detector didn't run, so that nothing is to be concluded; absent
        /// inside when it ran and nothing rings.
        std::optional<std::optional<TarvaneKit::RingAlert>> ringAlert;
    };

    /// Largest absolute sample of either side since the last frame.
    float peak = 0.0F;
    /// Present when the spectrum was computed.
    std::optional<RTA> rta;
    /// None, one or two rows of 1024 levels, oldest first.
    std::vector<std::vector<float>> spectrogramRows;
};

}  // namespace TarvaneApp
