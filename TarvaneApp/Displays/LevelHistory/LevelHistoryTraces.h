// What a level history reads from its recorders for one picture: an envelope of one entry per
// pixel column for each trace. So the cost of a picture follows its width, and what is drawn
// follows from these numbers alone.
#pragma once

#include <optional>
#include <vector>

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

    static LevelHistoryTraces read(const LevelHistoryView& view, double plotWidth);
};

}  // namespace TarvaneApp
