#include "Displays/Spectrum/SpectrumHover.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "Displays/SharpLine.h"
#include "Displays/Spectrum/SpectrumView.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double hoverOpacity = 0.95;
constexpr double hoverMiddle = 14.0;
constexpr double hoverInset = 55.0;
constexpr double hoverMarginAcross = 6.0;
constexpr double hoverMarginUpDown = 3.0;

QFont hoverFont(const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::caption, QFont::Medium);
}

}  // namespace

QRectF hoverPlate(const SpectrumView& view, const QSizeF& size, const Typeface& typeface) {
    if (!view.hover.xPosition || !view.hover.frequencyHz) {
        return {};
    }
    const QFont font = hoverFont(typeface);
    const double width = TabularText::width(view.hoverLabel(*view.hover.frequencyHz), font) +
                         2.0 * hoverMarginAcross;
    const double height = QFontMetricsF(font).height() + 2.0 * hoverMarginUpDown;
    const double inset = std::max(hoverInset, width / 2.0);
    const double middle = size.width() > 2.0 * inset
                              ? std::clamp(*view.hover.xPosition, inset, size.width() - inset)
                              : size.width() / 2.0;
    return {middle - width / 2.0, std::max(hoverMiddle - height / 2.0, 0.0), width, height};
}

void paintHover(QPainter& painter, const SpectrumView& view, const QSizeF& size,
                const Typeface& typeface) {
    const QRectF plate = hoverPlate(view, size, typeface);
    if (plate.isEmpty()) {
        return;
    }
    paintVerticalLine(painter, *view.hover.xPosition, QRectF(QPointF(), size),
                      Theme::gridLineStrong);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::faded(Theme::panelBackground, hoverOpacity));
    painter.drawRoundedRect(plate, Theme::Radius::plate, Theme::Radius::plate);
    const QFont font = hoverFont(typeface);
    painter.setPen(Qt::white);
    TabularText::draw(painter,
                      QPointF(plate.left() + hoverMarginAcross,
                              plate.top() + hoverMarginUpDown + QFontMetricsF(font).ascent()),
                      view.hoverLabel(*view.hover.frequencyHz), font);
}

}  // namespace TarvaneApp
