#include "Displays/TabularText.h"

#include <QCache>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace TarvaneApp {

namespace {

// Between the ink of neighbours, as a share of the font's size: the usual gap of rounded typefaces.
constexpr double inkGapShare = 0.09;

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

// How one typeface sets its characters. One with equal digits is used as it is. In any other,
// cells as wide as the widest digit would look loose, so cells are made of ink and an even gap.
class Cells {
  public:
    explicit Cells(const QFont& font)
        : metrics_(font), inkGap_(inkGapShare * metrics_.horizontalAdvance(u'm')) {
        double narrowest = metrics_.horizontalAdvance(u'0');
        double widest = narrowest;
        double widestInk = 0.0;
        for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
            const double advance = metrics_.horizontalAdvance(QChar(digit));
            narrowest = std::min(narrowest, advance);
            widest = std::max(widest, advance);
            widestInk = std::max(widestInk, ink(QChar(digit)).width());
        }
        isTabular_ = widest - narrowest < 0.01 * widest;
        digitWidth_ = isTabular_ ? widest : std::min(widest, widestInk + inkGap_);
    }

    /// Measuring a typeface costs more than drawing a number, and a drawing uses a handful of
    /// fonts. Each thread that draws measures its own: a font's metrics belong to one.
    static const Cells& of(const QFont& font) {
        thread_local QCache<QFont, Cells> measured(64);
        if (const Cells* known = measured.object(font)) {
            return *known;
        }
        auto* cells = new Cells(font);
        measured.insert(font, cells);
        return *cells;
    }

    struct Place {
        double width;   // of the cell
        double offset;  // of the glyph's origin in it
    };
    Place place(QChar character) const {
        const double advance = metrics_.horizontalAdvance(character);
        if (isTabular_ || character.isSpace() || character.isLetter()) {
            return {isDigit(character) ? digitWidth_ : advance, 0.0};
        }
        const QRectF inked = ink(character);
        const double width = isDigit(character) ? digitWidth_ : inked.width() + inkGap_;
        return {width, (width - inked.width()) / 2.0 - inked.left()};
    }

  private:
    QRectF ink(QChar character) const { return metrics_.tightBoundingRect(QString(character)); }

    QFontMetricsF metrics_;
    double inkGap_;
    bool isTabular_ = false;
    double digitWidth_ = 0.0;
};

}  // namespace

double TabularText::width(const QString& text, const QFont& font) {
    const Cells& cells = Cells::of(font);
    double width = 0.0;
    for (const QChar character : text) {
        width += cells.place(character).width;
    }
    return width;
}

void TabularText::draw(QPainter& painter, const QPointF& baseline, const QString& text,
                       const QFont& font) {
    const Cells& cells = Cells::of(font);
    painter.setFont(font);
    double x = baseline.x();
    for (const QChar character : text) {
        const auto [width, offset] = cells.place(character);
        painter.drawText(QPointF(x + offset, baseline.y()), QString(character));
        x += width;
    }
}

}  // namespace TarvaneApp
