#include "Displays/LevelHistory/LevelHistoryTraces.h"

#include <algorithm>

#include "Displays/LevelHistory/LevelHistoryView.h"

namespace TarvaneApp {

namespace {

LevelHistoryTraces::Envelope envelope(const TarvaneKit::SPLHistoryRecorder& recorder, int metric,
                                      const LevelHistoryViewport::Range& range, int columns,
                                      double offsetDB) {
    LevelHistoryTraces::Envelope result;
    result.reserve(static_cast<std::size_t>(columns));
    for (const auto& column : recorder.envelope(metric, range.from, range.to, columns)) {
        result.push_back(column ? std::optional(LevelHistoryTraces::Column{column->min - offsetDB,
                                                                           column->max - offsetDB})
                                : std::nullopt);
    }
    return result;
}

}  // namespace

LevelHistoryTraces LevelHistoryTraces::read(const LevelHistoryView& view, double plotWidth) {
    LevelHistoryTraces traces;
    if (view.recorder == nullptr) {
        return traces;
    }
    const int columns = std::max(static_cast<int>(plotWidth), 1);
    const LevelHistoryViewport::Range range = view.range();
    traces.isEmpty = view.recorder->isEmpty();
    traces.extremes = view.recorder->extremes(view.metricIndex);
    traces.primary =
        envelope(*view.recorder, view.metricIndex, range, columns, view.displayOffsetDB);
    if (view.secondaryMetricIndex) {
        traces.secondary = envelope(*view.recorder, *view.secondaryMetricIndex, range, columns,
                                    view.displayOffsetDB);
    }
    for (const LevelHistoryOverlay& overlay : view.overlays) {
        traces.overlays.push_back(overlay.recorder != nullptr
                                      ? envelope(*overlay.recorder, overlay.metricIndex, range,
                                                 columns, overlay.displayOffsetDB)
                                      : Envelope());
    }
    if (view.lostAudio != nullptr) {
        for (const LostAudio& lost : *view.lostAudio) {
            if (lost.elapsed >= range.from && lost.elapsed <= range.to) {
                traces.lostAudio.push_back(lost.elapsed);
            }
        }
    }
    return traces;
}

}  // namespace TarvaneApp
