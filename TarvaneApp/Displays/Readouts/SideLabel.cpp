#include "Displays/Readouts/SideLabel.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "Displays/Contrast.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double titleTracking = 0.5;
constexpr double rowGap = 3.0;

QFont sideTitleFont(double textScale, const Typeface& typeface) {
    QFont font = typeface.systemFont(Theme::Text::tick * textScale, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, titleTracking * textScale);
    return font;
}

QFont sideValueFont(double textScale, const Typeface& typeface) {
    return typeface.roundedFont(Theme::Text::number * textScale, QFont::DemiBold);
}

QFont sideUnitFont(double textScale, const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::tick * textScale);
}

double unitHeight(const QString& unit, double textScale, const Typeface& typeface) {
    return unit.isEmpty() ? 0.0 : QFontMetricsF(sideUnitFont(textScale, typeface)).height();
}

}  // namespace

QSizeF SideLabel::size(double textScale, const Typeface& typeface) const {
    const QFont titleFace = sideTitleFont(textScale, typeface);
    const QFont valueFace = sideValueFont(textScale, typeface);
    return {std::max({TabularText::width(QStringLiteral("-000.0"), valueFace),
                      QFontMetricsF(titleFace).horizontalAdvance(title),
                      QFontMetricsF(sideUnitFont(textScale, typeface)).horizontalAdvance(unit)}),
            QFontMetricsF(titleFace).capHeight() + rowGap * textScale +
                QFontMetricsF(valueFace).height() + unitHeight(unit, textScale, typeface)};
}

void SideLabel::paint(QPainter& painter, const QRectF& rect, double textScale,
                      const Typeface& typeface) const {
    const QFont titleFace = sideTitleFont(textScale, typeface);
    const QFontMetricsF titleMetrics(titleFace);
    // The tracking behind the last letter isn't part of the word.
    const double titleWidth = titleMetrics.horizontalAdvance(title) - titleTracking * textScale;
    painter.setFont(titleFace);
    painter.setPen(Theme::axisText);
    painter.drawText(
        QPointF(rect.center().x() - titleWidth / 2.0, rect.top() + titleMetrics.capHeight()),
        title);

    const QFont valueFace = sideValueFont(textScale, typeface);
    const double foot = rect.bottom() - unitHeight(unit, textScale, typeface);
    painter.setPen(Contrast::legible(color, Theme::panelBackground));
    TabularText::draw(painter,
                      QPointF(rect.center().x() - TabularText::width(value, valueFace) / 2.0,
                              foot - QFontMetricsF(valueFace).descent()),
                      value, valueFace);
    if (!unit.isEmpty()) {
        painter.setFont(sideUnitFont(textScale, typeface));
        painter.setPen(Theme::axisText);
        painter.drawText(QRectF(rect.left(), foot, rect.width(), rect.bottom() - foot),
                         Qt::AlignCenter, unit);
    }
}

}  // namespace TarvaneApp
