#include "Displays/Readouts/ReadoutDrawing.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Displays/Readouts/ReadoutText.h"
#include "Displays/TabularText.h"

namespace TarvaneApp::ReadoutDrawing {

namespace {

constexpr double labelOpacity = 0.7;

// The value's font is measured at this size; other sizes are scaled from it.
constexpr double measuringSize = 100.0;

QFont labelFont(double textScale, const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::body * textScale, QFont::Medium);
}

// How far the digits' ink reaches above and below the base line.
struct DigitBox {
    double top = 0.0;     // above the base line, positive
    double bottom = 0.0;  // under it
    double height() const { return top + bottom; }
};

DigitBox digitBox(const QFont& font) {
    const QRectF ink = QFontMetricsF(font).tightBoundingRect(QStringLiteral("0123456789"));
    return {-ink.top(), ink.bottom()};
}

void paintValueAt(QPainter& painter, const QString& text, const QColor& color, double left,
                  const QFont& font, const ReadoutFrame& frame) {
    const DigitBox digits = digitBox(font);
    painter.setPen(color);
    TabularText::draw(
        painter, QPointF(left, frame.value.center().y() + digits.height() / 2.0 - digits.bottom),
        text, font);
}

QRect inkArea(const QRectF& rect, double overhangAcross) {
    constexpr double antialiasing = 2.0;
    return rect.adjusted(-overhangAcross, -antialiasing, overhangAcross, antialiasing)
        .toAlignedRect();
}

}  // namespace

QSizeF valueSize(const QString& widthTemplate, const Typeface& typeface) {
    const QFont font = typeface.roundedFont(measuringSize);
    return QSizeF(TabularText::width(widthTemplate, font), digitBox(font).height()) *
           (Theme::Text::readout / measuringSize);
}

QSizeF labelSize(const QString& text, const Typeface& typeface) {
    const QFontMetricsF metrics(labelFont(measuringScale, typeface));
    return QSizeF(metrics.horizontalAdvance(text), metrics.height()) / measuringScale;
}

void paintValue(QPainter& painter, double value, const QString& ordinary,
                const TarvaneKit::RGBAColor& color, const ReadoutFrame& frame,
                const Typeface& typeface) {
    const QString text = levelText(value);
    const QFont font = fitted(typeface.roundedFont(frame.valuePixelSize), text, frame.value.width(),
                              ReadoutLayout::smallestValueScale);
    const double width = TabularText::width(text, font);
    const double middle = frame.value.center().x();
    if (std::isfinite(value)) {
        const double right = middle + std::max(width, TabularText::width(ordinary, font)) / 2.0;
        paintValueAt(painter, text, Theme::color(color), right - width, font, frame);
    } else {
        paintValueAt(painter, text, Theme::axisText, middle - width / 2.0, font, frame);
    }
}

void paintValueText(QPainter& painter, const QString& text, const QColor& color,
                    const ReadoutFrame& frame, const Typeface& typeface) {
    const QFont font = typeface.roundedFont(frame.valuePixelSize);
    paintValueAt(painter, text, color,
                 frame.value.center().x() - TabularText::width(text, font) / 2.0, font, frame);
}

void paintLabel(QPainter& painter, const QString& text, const ReadoutFrame& frame,
                const Typeface& typeface) {
    QFont font = labelFont(frame.textScale, typeface);
    const double width = QFontMetricsF(font).horizontalAdvance(text);
    if (width > frame.label.width()) {
        font.setPixelSize(std::max(
            static_cast<int>(std::floor(font.pixelSize() * frame.label.width() / width)), 1));
    }
    painter.setFont(font);
    painter.setPen(Theme::faded(Theme::primaryText, labelOpacity));
    painter.drawText(frame.label, Qt::AlignCenter, text);
}

QRect valueArea(const ReadoutFrame& frame) {
    return inkArea(frame.value, 2.0 + frame.valuePixelSize * 0.05);
}

QRect textArea(const QRectF& rect) {
    return rect.isEmpty() ? QRect() : inkArea(rect, 2.0);
}

QFont fitted(QFont font, const QString& text, double width, double smallest) {
    const double natural = TabularText::width(text, font);
    if (natural > width) {
        const double scale = std::max(width / natural, smallest);
        font.setPixelSize(std::max(static_cast<int>(std::floor(font.pixelSize() * scale)), 1));
    }
    return font;
}

}  // namespace TarvaneApp::ReadoutDrawing
