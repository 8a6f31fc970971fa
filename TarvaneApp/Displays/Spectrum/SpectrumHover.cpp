#include "Displays/Spectrum/SpectrumHover.h"

#include <algorithm>

#include "Displays/HoverPlate.h"
#include "Displays/SharpLine.h"
#include "Displays/Spectrum/SpectrumView.h"

namespace TarvaneApp {

namespace {

constexpr double plateMiddle = 14.0;    // under the graph's top
constexpr double smallestInset = 55.0;  // of the plate's middle, from the graph's sides

HoverPlate plateOf(const SpectrumView& view) {
    return {.text = view.hoverLabel(*view.hover.frequencyHz),
            .marginAcross = Theme::Space::related};
}

}  // namespace

QRectF hoverPlate(const SpectrumView& view, const QSizeF& size, const Typeface& typeface) {
    if (!view.hover.xPosition || !view.hover.frequencyHz) {
        return {};
    }
    const QSizeF plate = plateOf(view).size(typeface);
    const double inset = std::max(smallestInset, plate.width() / 2.0);
    const double middle = size.width() > 2.0 * inset
                              ? std::clamp(*view.hover.xPosition, inset, size.width() - inset)
                              : size.width() / 2.0;
    return {
        QPointF(middle - plate.width() / 2.0, std::max(plateMiddle - plate.height() / 2.0, 0.0)),
        plate};
}

void paintHover(QPainter& painter, const SpectrumView& view, const QSizeF& size,
                const Typeface& typeface) {
    const QRectF plate = hoverPlate(view, size, typeface);
    if (plate.isEmpty()) {
        return;
    }
    paintVerticalLine(painter, *view.hover.xPosition, QRectF(QPointF(), size),
                      Theme::gridLineStrong);
    plateOf(view).paint(painter, plate, typeface);
}

}  // namespace TarvaneApp
