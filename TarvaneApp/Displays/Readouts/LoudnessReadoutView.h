// The loudness readout: one reading of the programme large between the target that it is held
// against and the true peak, with four readings under it and the clip badge. EBU R128.
//
// A value record with all that is drawn, and pure functions from it and a size to rectangles and
// painter calls. Nothing here measures. Coordinates are logical pixels, the origin at the top
// left.
#pragma once

#include <QRectF>
#include <QRegion>
#include <QSizeF>
#include <QString>
#include <array>

#include "Core/RGBAColor.h"
#include "Displays/Readouts/ReadoutLayout.h"
#include "Displays/Readouts/SideLabel.h"
#include "Displays/Theme.h"
#include "Metrics/InputClipState.h"
#include "Metrics/LoudnessReadings.h"
#include "Records/LostAudio.h"
#include "Records/LoudnessTarget.h"

class QPainter;

namespace TarvaneApp {

struct LoudnessReadoutView {
    /// A reading that is not finite shows as "—".
    TarvaneKit::LoudnessReadings readings;
    /// The reading that is shown large.
    TarvaneKit::LoudnessMetric headline = TarvaneKit::LoudnessMetric::shortTerm;
    LoudnessTarget target;
    LoudnessColors colors;
    /// Of the large value.
    TarvaneKit::RGBAColor color;
    TarvaneKit::InputClipState clipState = TarvaneKit::InputClipState::none;
    LostAudioTotal lostAudio = {};
    /// Keeps room for the button "Reset Integration".
    bool offersReset = false;
    /// Keeps room for the level bar.
    bool hasLevelBar = false;

    // --- what it says

    /// The readings in the row under the large value.
    static constexpr std::array rowMetrics{
        TarvaneKit::LoudnessMetric::momentary, TarvaneKit::LoudnessMetric::shortTerm,
        TarvaneKit::LoudnessMetric::integrated, TarvaneKit::LoudnessMetric::range};

    /// The widest ordinary number, which sets the value's size.
    static const QString& widthTemplate();
    /// The longest number that is usual of the headline: of all readings the range alone has no
    /// sign.
    QString ordinaryValue() const;
    /// The headline's name and unit, as "Short-Term  (LUFS)".
    QString labelText() const;
    /// The headline with its unit, as "-23.0 LUFS"; "—" without a value.
    QString spokenValue() const;

    /// A reading's colour by the target's thresholds; of the true peak by its ceiling. The range
    /// isn't judged.
    TarvaneKit::RGBAColor judgement(TarvaneKit::LoudnessMetric metric) const;

    SideLabel targetLabel() const;
    QString targetHelp() const;
    SideLabel truePeakLabel() const;
    QString truePeakHelp() const;

    struct Reading {
        QString title;
        QString value;
        QString unit;  ///< only where it isn't LUFS
        QColor color;
        QString help;
        bool operator==(const Reading&) const = default;
    };
    Reading reading(TarvaneKit::LoudnessMetric metric) const;
};

struct LoudnessReadoutGeometry : ReadoutFrame {
    QRectF target;
    QRectF truePeak;
    /// The scale of the row's texts: `textScale`, or less where there is too little width.
    double readingsScale = 1.0;
    std::array<QRectF, LoudnessReadoutView::rowMetrics.size()> readings;
};

/// Laid out by ReadoutLayout. It doesn't depend on the values: numbers change, and nothing moves.
LoudnessReadoutGeometry layout(const LoudnessReadoutView& view, const QSizeF& size,
                               const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const LoudnessReadoutView& view,
           const LoudnessReadoutGeometry& geometry, const QRegion& dirty,
           const Typeface& typeface = Typeface::installed());

/// The whole readout at a size.
void paint(QPainter& painter, const LoudnessReadoutView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());

/// Whether both records have their parts in the same places.
bool sameShape(const LoudnessReadoutView& a, const LoudnessReadoutView& b);

/// What has to be repainted when the second record replaces the first in the same
/// geometry: empty when both look the same.
QRegion changedArea(const LoudnessReadoutView& before, const LoudnessReadoutView& after,
                    const LoudnessReadoutGeometry& geometry);

}  // namespace TarvaneApp
