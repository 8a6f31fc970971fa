// The level history graph: a session's level over time, one column per pixel from its smallest to
// its largest level, in the colours of the traffic light; other channels as lines over it; marks
// at the extremes; a read-out under the pointer.
//
// A value record with all that is drawn, its arithmetic, and the plain drawing with any painter:
// what pages are drawn with, and what the fast drawing of windows (LevelHistoryRaster) must look
// like. Coordinates are logical pixels, the origin at the top left of the view. Main thread, as
// the recorder that it reads.
#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <optional>
#include <vector>

#include "Core/RGBAColor.h"
#include "Core/UUID.h"
#include "Displays/LevelHistory/LevelHistoryTraces.h"
#include "Displays/LevelHistory/LevelHistoryViewport.h"
#include "Displays/Theme.h"
#include "Metrics/SPLHistoryRecorder.h"
#include "Metrics/TrafficLightConfig.h"

class QPainter;

namespace TarvaneApp {

/// Another channel's history as a line.
struct LevelHistoryOverlay {
    TarvaneKit::UUID id;                                       ///< of the channel
    const TarvaneKit::SPLHistoryRecorder* recorder = nullptr;  ///< outlives the record
    int revision = 0;
    int metricIndex = 0;
    TarvaneKit::RGBAColor color;
    double displayOffsetDB = 0.0;

    bool operator==(const LevelHistoryOverlay&) const = default;
};

/// Where the pointer is; absent while it is outside.
struct LevelHistoryHoverState {
    std::optional<double> xPosition;

    bool operator==(const LevelHistoryHoverState&) const = default;
};

/// Two that compare equal look the same.
struct LevelHistoryView {
    struct Span {
        double lowest = 0.0;
        double highest = 0.0;
        bool operator==(const Span&) const = default;
    };

    const TarvaneKit::SPLHistoryRecorder* recorder = nullptr;  ///< outlives the record
    int revision = 0;  ///< another one for every change of the recorder
    int metricIndex = 0;
    std::optional<double> windowSeconds;  ///< of the preset; absent for the whole session
    LevelHistoryViewport viewport;
    double displayOffsetDB = 0.0;  ///< taken off recorded levels
    QString unitLabel;
    TarvaneKit::TrafficLightConfig trafficLight;
    double trafficLightOffsetDB = 0.0;  ///< taken off recorded levels for the thresholds
    bool isInteractive = true;          ///< with hover and marks; false on pages
    std::vector<LevelHistoryOverlay> overlays;
    std::optional<int> secondaryMetricIndex;  ///< drawn as a line
    std::optional<Span> fixedDBRange;
    LevelHistoryHoverState hover;
    double leftGutter = 40.0;
    double bottomGutter = 16.0;
    double topInset = 14.0;

    // --- arithmetic

    QRectF plot(const QSizeF& size) const;
    LevelHistoryViewport::Session session() const;
    LevelHistoryViewport::Range range() const { return viewport.range(session()); }
    /// The axis of these traces: whole tens about all their levels, at least 20 dB.
    Span yRange(const LevelHistoryTraces& traces) const;
    /// Pins to the ends of the axis.
    static double y(double levelDB, const Span& axis, const QRectF& plot);
    static double levelAt(double y, const Span& axis, const QRectF& plot);
    static double x(double elapsed, const LevelHistoryViewport::Range& range, const QRectF& plot);
    static double elapsedAt(double x, const LevelHistoryViewport::Range& range, const QRectF& plot);

    /// The levels at which rules stand.
    static std::vector<double> levelTicks(const Span& axis);
    /// Between two time rules: a step for people, at least 80 pixels wide.
    static double timeStep(double span, double width);
    static std::vector<double> timeTicks(const LevelHistoryViewport::Range& range, double width);
    /// "59:59", "1:00:00".
    static QString timeLabel(double elapsed);
    /// What a mark or button at an extreme says, as "94.2 dB 1:05".
    QString extremeLabel(const TarvaneKit::LevelHistoryExtreme& extreme) const;

    /// The colour of a column with that largest level, as it is shown.
    TarvaneKit::RGBAColor columnColor(double maxDB) const;

    bool operator==(const LevelHistoryView&) const = default;
};

/// The picture's skeleton: everything that follows from the record and a size.
struct LevelHistoryGeometry {
    QRectF plot;
    LevelHistoryViewport::Range range;
    LevelHistoryTraces traces;
    LevelHistoryView::Span axis;
};
LevelHistoryGeometry layout(const LevelHistoryView& view, const QSizeF& size);

/// The whole graph; the background is left as it is. The read-out is drawn apart, since it
/// follows the pointer.
void paint(QPainter& painter, const LevelHistoryView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());

void drawGrid(QPainter& painter, const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
              const Typeface& typeface);
void drawColumns(QPainter& painter, const LevelHistoryView& view,
                 const LevelHistoryGeometry& geometry);
void drawLines(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry);
/// Marks at the extremes, and what an empty graph says.
void drawMarks(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const Typeface& typeface);

/// What the read-out says, empty for a pointer outside the plot.
QString hoverText(const LevelHistoryView& view, const LevelHistoryGeometry& geometry);
/// The read-out's plate; empty without a read-out.
QRectF hoverPlate(const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
                  const QSizeF& size, const Typeface& typeface = Typeface::installed());
void drawHover(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const QSizeF& size,
               const Typeface& typeface = Typeface::installed());

/// A line as its unbroken parts, and its look.
struct LevelHistoryLine {
    std::vector<std::vector<QPointF>> parts;
    QColor color;
    double width = 0.0;
};
std::vector<LevelHistoryLine> historyLines(const LevelHistoryView& view,
                                           const LevelHistoryGeometry& geometry);

/// The bright band of a column over its faint foot, on whole device pixels across.
struct LevelHistoryColumn {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;     ///< of band and foot
    double bottom = 0.0;  ///< of the band; the foot ends with the plot
    TarvaneKit::RGBAColor color;
};
std::vector<LevelHistoryColumn> historyColumns(const LevelHistoryView& view,
                                               const LevelHistoryGeometry& geometry,
                                               double pixelRatio);

namespace LevelHistoryOpacity {
inline constexpr double foot = 0.18;
inline constexpr double band = 0.9;
}  // namespace LevelHistoryOpacity

}  // namespace TarvaneApp
