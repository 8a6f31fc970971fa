#include "Displays/Readouts/ClipBadge.h"

#include <QFontMetricsF>
#include <QPainter>

#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"

namespace TarvaneApp {

using TarvaneKit::InputClipState;

namespace {

constexpr double tracking = 0.5;
constexpr double paddingUpDown = 2.0;

QFont badgeFont(double textScale, const Typeface& typeface) {
    QFont font = typeface.systemFont(Theme::Text::footnote * textScale, QFont::Bold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking * textScale);
    return font;
}

double textWidth(const QString& text, const QFont& font, double textScale) {
    return QFontMetricsF(font).horizontalAdvance(text) - tracking * textScale;
}

QSizeF badgeSize(const QString& text, double textScale, const Typeface& typeface) {
    const QFont font = badgeFont(textScale, typeface);
    return {textWidth(text, font, textScale) + 2.0 * Theme::Space::related * textScale,
            QFontMetricsF(font).height() + 2.0 * paddingUpDown * textScale};
}

}  // namespace

QString ClipBadge::text() const {
    switch (state) {
        case InputClipState::active:
            return QStringLiteral("CLIP");
        case InputClipState::latched:
            return QStringLiteral("CLIPPED");
        case InputClipState::none:
            break;
    }
    return {};
}

double ClipBadge::opacity() const {
    switch (state) {
        case InputClipState::active:
            return 1.0;
        case InputClipState::latched:
            return 0.4;
        case InputClipState::none:
            break;
    }
    return 0.0;
}

QString ClipBadge::help() const {
    switch (state) {
        case InputClipState::active:
            return QStringLiteral(
                "Input is clipping (at digital full scale). Levels read lower than the real SPL. "
                "Lower the input gain and recalibrate.");
        case InputClipState::latched:
            return QStringLiteral(
                "Input clipped since the last Min/Max reset, so the Max may read low. Reset "
                "Min/Max to clear.");
        case InputClipState::none:
            break;
    }
    return {};
}

QSizeF ClipBadge::size(double textScale, const Typeface& typeface) {
    return badgeSize(QStringLiteral("CLIPPED"), textScale, typeface);
}

void ClipBadge::paint(QPainter& painter, const QRectF& rect, double textScale,
                      const Typeface& typeface) const {
    if (opacity() <= 0.0) {
        return;
    }
    const QSizeF size = badgeSize(text(), textScale, typeface);
    QRectF plate(QPointF(), size);
    plate.moveCenter(rect.center());
    plate = PixelGrid(painter).snapped(plate);

    const QFont font = badgeFont(textScale, typeface);
    const QFontMetricsF metrics(font);
    painter.save();
    painter.setOpacity(painter.opacity() * opacity());
    paintPlate(painter, plate, Theme::Radius::graph * textScale,
               Theme::color(TarvaneKit::SignalColors::red));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QPointF(plate.center().x() - textWidth(text(), font, textScale) / 2.0,
                             plate.center().y() + metrics.capHeight() / 2.0),
                     text());
    painter.restore();
}

}  // namespace TarvaneApp
