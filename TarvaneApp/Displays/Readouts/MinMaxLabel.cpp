#include "Displays/Readouts/MinMaxLabel.h"

#include <cmath>

#include "Displays/Readouts/ReadoutText.h"
#include "Displays/Readouts/SideLabel.h"

namespace TarvaneApp {

QSizeF MinMaxLabel::size(double textScale, const Typeface& typeface) {
    return SideLabel{.title = QStringLiteral("MAX"), .value = {}, .unit = {}}.size(textScale,
                                                                                   typeface);
}

void MinMaxLabel::paint(QPainter& painter, const QRectF& rect, double textScale,
                        const Typeface& typeface) const {
    SideLabel{.title = title,
              .value = levelText(valueDB),
              .unit = {},
              .color = std::isfinite(valueDB) ? Theme::primaryText : Theme::axisText}
        .paint(painter, rect, textScale, typeface);
}

}  // namespace TarvaneApp
