#include "Displays/Readouts/ClipBadge.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include "Displays/Contrast.h"
#include "Displays/LevelHistory/LevelHistoryView.h"
#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"

namespace TarvaneApp {

using TarvaneKit::InputClipState;

namespace {

constexpr double tracking = 0.5;
constexpr double paddingUpDown = 2.0;
constexpr int mostGapsShown = 99;

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
    QString clip = clipText();
    if (!clip.isEmpty() || lost.count == 0) {
        return clip;
    }
    return lost.count == 1               ? QStringLiteral("1 GAP")
           : lost.count <= mostGapsShown ? QStringLiteral("%1 GAPS").arg(lost.count)
                                         : QStringLiteral("GAPS");
}

QString ClipBadge::lostAudioText() const {
    return lost.count == 0
               ? QString()
               : QStringLiteral("%1 %2, %3 s")
                     .arg(lost.count)
                     .arg(lost.count == 1 ? QStringLiteral("gap") : QStringLiteral("gaps"))
                     .arg(lost.seconds, 0, 'f', lost.seconds < 10.0 ? 2 : 0);
}

QString ClipBadge::clipText() const {
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
    return lost.count > 0 ? 0.7 : 0.0;
}

QString ClipBadge::help() const {
    QStringList sentences;
    if (state == InputClipState::active) {
        sentences << QStringLiteral(
            "Input is clipping (at digital full scale). Levels read lower than the real SPL. "
            "Lower the input gain and recalibrate.");
    } else if (state == InputClipState::latched) {
        sentences << QStringLiteral(
            "Input clipped since the last Min/Max reset, so the Max may read low. Reset "
            "Min/Max to clear.");
    }
    if (lost.count > 0) {
        sentences << QStringLiteral(
                         "Audio was lost since the start: %1, the last at %2. The audio server or "
                         "this computer was too busy. What was lost is in no reading.")
                         .arg(lostAudioText(), LevelHistoryView::timeLabel(lost.lastElapsed));
    }
    return sentences.join(u'\n');
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
    // The plate alone is faint: its text is to be read.
    const QColor red = Theme::color(TarvaneKit::SignalColors::red);
    paintPlate(
        painter, plate, Theme::Radius::graph * textScale,
        Theme::faded(state == InputClipState::none ? Theme::controlBackground : red, opacity()));
    painter.setFont(font);
    painter.setPen(state == InputClipState::none     ? Theme::peakHold
                   : state == InputClipState::active ? Contrast::textOn(red)
                                                     : Theme::primaryText);
    painter.drawText(QPointF(plate.center().x() - textWidth(text(), font, textScale) / 2.0,
                             plate.center().y() + metrics.capHeight() / 2.0),
                     text());
    painter.restore();
}

}  // namespace TarvaneApp
