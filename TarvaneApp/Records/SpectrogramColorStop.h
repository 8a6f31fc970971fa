// The ramp that colours a spectrogram's levels, as it is stored and edited.
#pragma once

#include <string>
#include <vector>

#include "Core/Coding.h"
#include "Core/RGBAColor.h"
#include "Core/UUID.h"

namespace TarvaneApp {

struct SpectrogramColorStop {
    /// Tells stops of one place and colour apart while they are edited.
    TarvaneKit::UUID id = TarvaneKit::UUID::random();
    /// 0 to 1 along the ramp, from the lowest level to the highest.
    double position = 0.0;
    /// The picture is opaque: alpha doesn't count.
    TarvaneKit::RGBAColor color;

    bool operator==(const SpectrogramColorStop&) const = default;
};

/// A ramp under a name of the user's; the name is its identity.
struct SpectrogramColorPreset {
    std::string name;
    std::vector<SpectrogramColorStop> stops;

    bool operator==(const SpectrogramColorPreset&) const = default;
};

/// Near-black through blue, green and orange to white, with a long dark stretch at its low end
/// that keeps the noise floor quiet.
const std::vector<SpectrogramColorStop>& defaultSpectrogramColorStops();

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::SpectrogramColorStop> {
    using Record = TarvaneApp::SpectrogramColorStop;
    static constexpr auto keys = std::tuple{
        defaulted("id", &Record::id),
        required("position", &Record::position),
        required("color", &Record::color),
    };
};

template <>
struct TarvaneKit::Coding<TarvaneApp::SpectrogramColorPreset> {
    using Record = TarvaneApp::SpectrogramColorPreset;
    static constexpr auto keys = std::tuple{
        required("name", &Record::name),
        required("stops", &Record::stops),
    };
};
