// How well what is drawn stands out of its ground, read off the drawing.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <algorithm>
#include <functional>
#include <map>

#include "Displays/Contrast.h"
#include "Displays/Theme.h"

namespace TarvaneTests {

/// The colour that most of a rectangle has, to the one in it that differs most: a plate, to the
/// strokes of what is written on it. Drawn large, so that strokes have their full colour.
inline double drawnContrast(const QRectF& rect, const std::function<void(QPainter&)>& draw) {
    constexpr double enlarged = 6.0;
    QImage image((rect.size() * enlarged).toSize(), QImage::Format_RGB32);
    image.fill(TarvaneApp::Theme::panelBackground);
    QPainter painter(&image);
    painter.scale(enlarged, enlarged);
    painter.translate(-rect.topLeft());
    draw(painter);
    painter.end();
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ++counts[image.pixel(x, y)];
        }
    }
    QRgb ground = 0;
    int most = 0;
    for (const auto& [color, count] : counts) {
        if (count > most) {
            most = count;
            ground = color;
        }
    }
    double best = 1.0;
    for (const auto& [color, count] : counts) {
        best = std::max(best, TarvaneApp::Contrast::ratio(QColor(color), QColor(ground)));
    }
    return best;
}

}  // namespace TarvaneTests
