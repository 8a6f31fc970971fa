// The page of one report: its text, and the session's level history under it, in the look of the
// live display. Drawn with any painter, as vectors in a document and as pixels in an image.
//
// A page is made on the main thread, of the session up to that moment, and asks the engine for
// nothing afterwards: metering goes on, and any one thread may draw it.
#pragma once

#include <QSizeF>
#include <optional>

#include "Displays/LevelHistory/LevelHistoryGeometry.h"
#include "Displays/LevelHistory/LevelHistoryView.h"
#include "Displays/Theme.h"
#include "Reports/LevelHistoryReport.h"

class QPainter;

namespace TarvaneApp {

struct LevelHistoryReportView {
    LevelHistoryReport report;
    LevelHistoryView graph;         ///< without its recorder, which goes on
    LevelHistoryGeometry geometry;  ///< what was read from it

    /// In points.
    static constexpr double width = 1400.0;

    /// The page of a channel as it stands now. Main thread.
    static std::optional<LevelHistoryReportView> page(const TarvaneKit::UUID& channelID,
                                                      const MeterEngine& engine,
                                                      TarvaneKit::Date exportDate);

    /// The width, and the height that the text needs.
    QSizeF size(const Typeface& typeface = Typeface::installed()) const;

    /// The whole page from the origin on, one unit a point.
    void paint(QPainter& painter, const Typeface& typeface = Typeface::installed()) const;
};

}  // namespace TarvaneApp
