#include "Readouts/MinMaxLabel.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "Readouts/ReadoutText.h"
#include "TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double titleSize = 9.0;
constexpr double titleTracking = 0.5;
constexpr double valueSize = 16.0;
constexpr double rowGap = 3.0;

QFont titleFont(double textScale, const Typeface& typeface) {
    QFont font = typeface.systemFont(titleSize * textScale, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, titleTracking * textScale);
    return font;
}

QFont valueFont(double textScale, const Typeface& typeface) {
    return typeface.roundedFont(valueSize * textScale, QFont::DemiBold);
}

}  // namespace

QSizeF MinMaxLabel::size(double textScale, const Typeface& typeface) {
    const QFont title = titleFont(textScale, typeface);
    const QFont value = valueFont(textScale, typeface);
    return {std::max(TabularText::width(QStringLiteral("-000.0"), value),
                     QFontMetricsF(title).horizontalAdvance(QStringLiteral("MAX"))),
            QFontMetricsF(title).capHeight() + rowGap * textScale + QFontMetricsF(value).height()};
}

void MinMaxLabel::paint(QPainter& painter, const QRectF& rect, double textScale,
                        const Typeface& typeface) const {
    const QFont titleFace = titleFont(textScale, typeface);
    const QFontMetricsF titleMetrics(titleFace);
    // The tracking behind the last letter isn't part of the word.
    const double titleWidth = titleMetrics.horizontalAdvance(title) - titleTracking * textScale;
    painter.setFont(titleFace);
    painter.setPen(Theme::axisText);
    painter.drawText(
        QPointF(rect.center().x() - titleWidth / 2.0, rect.top() + titleMetrics.capHeight()),
        title);

    const QFont valueFace = valueFont(textScale, typeface);
    const QString text = levelText(valueDB);
    painter.setPen(Theme::primaryText);
    TabularText::draw(painter,
                      QPointF(rect.center().x() - TabularText::width(text, valueFace) / 2.0,
                              rect.bottom() - QFontMetricsF(valueFace).descent()),
                      text, valueFace);
}

}  // namespace TarvaneApp
