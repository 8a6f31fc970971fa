#include "Shell/Preferences/SpectrogramRampBar.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <algorithm>

#include "Displays/Spectrogram/SpectrogramView.h"
#include "Displays/Theme.h"
#include "Shell/Controls/SpokenRole.h"

namespace TarvaneApp {

namespace {

constexpr int plainHeight = 12;
constexpr int fullHeight = 22;
constexpr int markHeight = 6;
constexpr double markHalfWidth = 4.0;
constexpr int endsHeight = 15;
constexpr int smallestWidth = 60;

QImage picture(const std::vector<SpectrogramColorStop>& stops) {
    const SpectrogramRasterCache::LUT colors = SpectrogramView::colorLUT(stops);
    QImage image(static_cast<int>(colors.size()), 1, QImage::Format_RGB32);
    std::ranges::copy(colors, reinterpret_cast<QRgb*>(image.scanLine(0)));
    return image;
}

}  // namespace

SpectrogramRampBar::SpectrogramRampBar(Shows shows, QWidget* parent)
    : QWidget(parent), shows_(shows) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setSpokenRole(*this, QAccessible::Graphic);
    setAccessibleName(QStringLiteral("Color ramp"));
}

void SpectrogramRampBar::setRamp(const std::vector<SpectrogramColorStop>& stops) {
    if (stops != stops_) {
        stops_ = stops;
        update();
    }
}

void SpectrogramRampBar::setEnds(const QString& floor, const QString& ceiling) {
    floor_ = floor;
    ceiling_ = ceiling;
    setAccessibleDescription(floor + QStringLiteral(" to ") + ceiling);
    update();
}

int SpectrogramRampBar::barHeight() const {
    return shows_ == Shows::colors ? plainHeight : fullHeight;
}

QSize SpectrogramRampBar::sizeHint() const {
    return minimumSizeHint();
}

QSize SpectrogramRampBar::minimumSizeHint() const {
    return {smallestWidth,
            shows_ == Shows::colors ? plainHeight : fullHeight + markHeight + endsHeight};
}

void SpectrogramRampBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF bar(0.0, 0.0, width(), barHeight());
    QPainterPath outline;
    outline.addRoundedRect(bar, Theme::Radius::graph, Theme::Radius::graph);
    painter.save();
    painter.setClipPath(outline);
    painter.drawImage(bar, picture(stops_));
    painter.restore();
    // A dark ramp has edges too.
    painter.setPen(Theme::gridLineStrong);
    painter.drawRoundedRect(bar.adjusted(0.5, 0.5, -0.5, -0.5), Theme::Radius::graph,
                            Theme::Radius::graph);
    if (shows_ == Shows::colorsAndLevels) {
        paintMarks(painter, bar);
        paintEnds(painter);
    }
}

void SpectrogramRampBar::paintMarks(QPainter& painter, const QRectF& bar) const {
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::axisText);
    for (const SpectrogramColorStop& stop : stops_) {
        const double x = std::clamp(bar.left() + std::clamp(stop.position, 0.0, 1.0) * bar.width(),
                                    bar.left() + markHalfWidth, bar.right() - markHalfWidth);
        painter.drawPolygon(QPolygonF{QPointF(x, bar.bottom() + 1.0),
                                      QPointF(x - markHalfWidth, bar.bottom() + markHeight),
                                      QPointF(x + markHalfWidth, bar.bottom() + markHeight)});
    }
}

void SpectrogramRampBar::paintEnds(QPainter& painter) const {
    painter.setFont(Typeface::installed().systemFont(Theme::Text::caption));
    painter.setPen(Theme::axisText);
    const QRectF room(0.0, height() - endsHeight, width(), endsHeight);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignBottom, floor_);
    painter.drawText(room, Qt::AlignRight | Qt::AlignBottom, ceiling_);
}

}  // namespace TarvaneApp
