// What a level history reads from its recorders for one picture: an envelope of one entry per
// pixel column for each trace, the extremes, the holes. So the cost of a picture follows its width,
// and what is drawn follows from these numbers alone: once they are read, the recorders may go on,
// and any thread may draw.
#pragma once

#include <optional>
#include <vector>

#include "Metrics/SPLHistoryRecorder.h"

namespace TarvaneApp {

struct LevelHistoryView;

/// Levels as they are shown, absent where nothing was recorded.
struct LevelHistoryTraces {
    struct Column {
        double minDB = 0.0;
        double maxDB = 0.0;
    };
    using Envelope = std::vector<std::optional<Column>>;

    Envelope primary;
    Envelope secondary;              ///< empty without a secondary metric
    std::vector<Envelope> overlays;  ///< in the order of the record
    bool isEmpty = true;             ///< nothing is recorded yet
    /// Of the session, in the channel's calibrated scale.
    TarvaneKit::SPLHistoryRecorder::Extremes extremes;
    /// Seconds since the start of the session at which audio was lost, within the range shown.
    std::vector<double> lostAudio;

    static LevelHistoryTraces read(const LevelHistoryView& view, double plotWidth);
};

}  // namespace TarvaneApp
