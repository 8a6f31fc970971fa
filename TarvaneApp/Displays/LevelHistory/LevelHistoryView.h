// The level history graph: a session's level over time, one column per pixel from its smallest to
// its largest level, in the colours of the traffic light; other channels as lines over it; marks
// at the extremes; a readout under the pointer.
//
// A value record with all that is drawn, and its scales. LevelHistoryGeometry has the shapes that
// follow from it, LevelHistoryDrawing the plain drawing and LevelHistoryRaster the fast one of
// windows. Coordinates are logical pixels, the origin at the top left of the view. Main thread, as
// the recorder that it reads.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <optional>
#include <vector>

#include "Core/RGBAColor.h"
#include "Core/UUID.h"
#include "Displays/LevelHistory/LevelHistoryTraces.h"
#include "Displays/LevelHistory/LevelHistoryViewport.h"
#include "Metrics/SPLHistoryRecorder.h"
#include "Metrics/TrafficLightConfig.h"
#include "Records/LostAudio.h"

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

/// Records that compare equal look the same.
struct LevelHistoryView {
    struct Span {
        double lowest = 0.0;
        double highest = 0.0;
        bool operator==(const Span&) const = default;
    };
    /// The `fixedDBRange` of program loudness.
    static constexpr Span loudnessAxis{-60.0, 0.0};

    const TarvaneKit::SPLHistoryRecorder* recorder = nullptr;  ///< outlives the record
    int revision = 0;  ///< changes with every change of the recorder
    int metricIndex = 0;
    std::optional<double> windowSeconds;  ///< of the preset; absent for the whole session
    LevelHistoryViewport viewport;
    double displayOffsetDB = 0.0;  ///< subtracted from recorded levels
    QString unitLabel;
    TarvaneKit::TrafficLightConfig trafficLight;
    double trafficLightOffsetDB = 0.0;  ///< subtracted from recorded levels for the thresholds
    bool isInteractive = true;          ///< with readout and marks; false on printed pages
    std::vector<LevelHistoryOverlay> overlays;
    std::optional<int> secondaryMetricIndex;  ///< drawn as a line
    /// Marked where they are; outlive the record.
    const std::vector<LostAudio>* lostAudio = nullptr;
    LostAudioTotal lostAudioTotal = {};  ///< changes with them
    std::optional<Span> fixedDBRange;
    LevelHistoryHoverState hover;
    double leftGutter = 40.0;
    double bottomGutter = 16.0;
    double topInset = 14.0;

    // --- its scales

    QRectF plot(const QSizeF& size) const;
    LevelHistoryViewport::Session session() const;
    LevelHistoryViewport::Range range() const { return viewport.range(session()); }
    /// The axis of these traces: whole tens about all their levels, at least 20 dB.
    Span yRange(const LevelHistoryTraces& traces) const;
    /// A level beyond the axis maps to its end.
    static double y(double levelDB, const Span& axis, const QRectF& plot);
    static double levelAt(double y, const Span& axis, const QRectF& plot);
    static double x(double elapsed, const LevelHistoryViewport::Range& range, const QRectF& plot);
    static double elapsedAt(double x, const LevelHistoryViewport::Range& range, const QRectF& plot);

    /// The levels with a grid line.
    static std::vector<double> levelTicks(const Span& axis);
    /// Those of them with a label, from the lowest up: each that has room for its digits.
    static std::vector<double> levelLabels(const Span& axis, double plotHeight);
    /// Between two grid lines of time: a round step, at least 80 pixels wide.
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

}  // namespace TarvaneApp
