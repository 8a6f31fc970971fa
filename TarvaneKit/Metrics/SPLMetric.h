// The name of any reading that a channel can show.
#pragma once

#include <string>
#include <variant>

#include "DSP/Weighting.h"
#include "Metrics/LoudnessMetric.h"

namespace TarvaneKit {

struct SPLMetric {
    /// A time-weighted level.
    struct SPL {
        Weighting weighting;
        TimeWeighting timeWeighting;
        bool operator==(const SPL&) const = default;
    };
    /// The peak over the last second.
    struct Peak {
        Weighting weighting;
        bool operator==(const Peak&) const = default;
    };
    /// The equivalent continuous level of the accumulation with that id.
    struct Leq {
        std::string id;
        bool operator==(const Leq&) const = default;
    };
    /// Read from the channel's loudness meter, not from its level meters.
    struct Loudness {
        LoudnessMetric metric;
        bool operator==(const Loudness&) const = default;
    };

    static SPLMetric spl(Weighting weighting, TimeWeighting timeWeighting) {
        return {SPL{weighting, timeWeighting}};
    }
    static SPLMetric peak(Weighting weighting) { return {Peak{weighting}}; }
    static SPLMetric leq(std::string id) { return {Leq{std::move(id)}}; }
    static SPLMetric loudness(LoudnessMetric metric) { return {Loudness{metric}}; }

    std::variant<SPL, Peak, Leq, Loudness> reading;

    bool operator==(const SPLMetric&) const = default;
};

}  // namespace TarvaneKit
