// The colour range of a channel's spectrogram, one per unit, so that a change of unit brings
// back the range last used there.
#pragma once

#include "Core/Coding.h"

namespace TarvaneApp {

struct SpectrogramRange {
    double floorDB = 0.0;
    double ceilingDB = 0.0;

    bool operator==(const SpectrogramRange&) const = default;
};

struct SpectrogramRanges {
    SpectrogramRange spl{30.0, 110.0};
    SpectrogramRange dbfs{-100.0, -20.0};

    /// The two keys under which settings once held a single range.
    struct LegacyKeys {
        static constexpr std::string_view floorDB = "spectrogramFloorDB";
        static constexpr std::string_view ceilingDB = "spectrogramCeilingDB";
    };

    /// The ranges that a single old one stands for. It counts as dB SPL when its ceiling is
    /// above 20, else as dBFS. A value missing or not finite, or less than 3 dB between them,
    /// gives the defaults.
    static SpectrogramRanges fromLegacy(std::optional<double> floorDB,
                                        std::optional<double> ceilingDB);

    bool operator==(const SpectrogramRanges&) const = default;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::SpectrogramRange> {
    static constexpr auto keys = std::tuple{
        required("floorDB", &TarvaneApp::SpectrogramRange::floorDB),
        required("ceilingDB", &TarvaneApp::SpectrogramRange::ceilingDB),
    };
};

template <>
struct TarvaneKit::Coding<TarvaneApp::SpectrogramRanges> {
    static constexpr auto keys = std::tuple{
        defaulted("spl", &TarvaneApp::SpectrogramRanges::spl),
        defaulted("dbfs", &TarvaneApp::SpectrogramRanges::dbfs),
    };
};
