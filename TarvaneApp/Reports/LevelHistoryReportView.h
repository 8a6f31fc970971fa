// The page of one report: its text, and the session's level history under it, in the look of the
// live display. Drawn with any painter, as vectors in a document and as pixels in an image.
#pragma once

#include <QSizeF>
#include <optional>

#include "Displays/LevelHistory/LevelHistoryView.h"
#include "Displays/Theme.h"
#include "Reports/LevelHistoryReport.h"

class QPainter;

namespace TarvaneApp {

struct LevelHistoryReportView {
    LevelHistoryReport report;
    LevelHistoryView graph;

    /// In points.
    static constexpr double width = 1400.0;

    /// The page of a channel as it stands now. The graph reads the channel's history when it is
    /// painted, so that the page is painted before anything more is recorded.
    static std::optional<LevelHistoryReportView> page(const TarvaneKit::UUID& channelID,
                                                      const MeterEngine& engine,
                                                      TarvaneKit::Date exportDate);

    /// The width, and the height that the text needs.
    QSizeF size(const Typeface& typeface = Typeface::installed()) const;

    /// The whole page from the origin on, one unit a point.
    void paint(QPainter& painter, const Typeface& typeface = Typeface::installed()) const;
};

}  // namespace TarvaneApp
