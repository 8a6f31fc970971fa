#include "Displays/HoverPlate.h"

#include <QFontMetricsF>
#include <QPainter>

#include "Displays/Plate.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double opacity = 0.95;

QFont textFont(const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::caption, QFont::Medium);
}

}  // namespace

QSizeF HoverPlate::size(const Typeface& typeface) const {
    const QFont font = textFont(typeface);
    return {TabularText::width(text, font) + 2.0 * marginAcross,
            QFontMetricsF(font).height() + 2.0 * marginUpDown};
}

void HoverPlate::paint(QPainter& painter, const QRectF& plate, const Typeface& typeface) const {
    const QFont font = textFont(typeface);
    paintPlate(painter, plate, Theme::Radius::plate, Theme::faded(Theme::panelBackground, opacity));
    painter.setPen(Qt::white);
    TabularText::draw(painter,
                      QPointF(plate.left() + marginAcross,
                              plate.top() + marginUpDown + QFontMetricsF(font).ascent()),
                      text, font);
}

}  // namespace TarvaneApp
