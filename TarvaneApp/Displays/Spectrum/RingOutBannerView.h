// The banner over a spectrum at feedback: the ring's frequency, its note and how far it is off that
// note. A value record, its layout and its drawing. Coordinates are logical pixels.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <optional>

#include "DSP/RingAlert.h"
#include "Displays/FrequencyAxis.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct RingOutBannerView {
    std::optional<TarvaneKit::RingAlert> alert;
    /// The ring sounds right now; else it has just stopped, and the banner's texts are dimmed.
    bool isLive = false;
    /// The graph's.
    FrequencyAxis axis{20.0, 20000.0};
    /// From 0 (hidden) to 1; in between while it fades.
    double presence = 1.0;

    // --- what it says

    /// "440Hz", "1.25kHz".
    QString frequencyText() const;
    /// "A4".
    QString noteText() const;
    /// "+6¢", "-12¢".
    QString centsText() const;
    /// All three, for a screen reader; empty without an alert.
    QString spokenText() const;

    // --- its drawing

    /// In the top right corner of a graph of that size, or in the left one where the ring itself
    /// would lie under it; empty without an alert.
    QRectF rect(const QSizeF& graph, const Typeface& typeface = Typeface::installed()) const;
    void paint(QPainter& painter, const QSizeF& graph,
               const Typeface& typeface = Typeface::installed()) const;

    bool operator==(const RingOutBannerView&) const = default;
};

}  // namespace TarvaneApp
