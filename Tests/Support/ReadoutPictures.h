// What the tests of all readouts' drawings share: the sizes to try, a picture of a readout, and
// what must hold of its parts at every size.
#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QPainter>
#include <utility>
#include <vector>

#include "Displays/Theme.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneTests {

/// From the least that a panel leaves its readout to a whole 4K screen.
inline const std::vector<QSize>& readoutSizes() {
    static const std::vector<QSize> sizes{{288, 146},   {328, 106},   {320, 200},  {290, 600},
                                          {868, 93},    {868, 143},   {480, 260},  {900, 260},
                                          {900, 430},   {1168, 186},  {1280, 720}, {1920, 600},
                                          {1920, 1080}, {1080, 1920}, {3840, 366}, {3840, 2160}};
    return sizes;
}

/// Every size from the least on, in steps of a few pixels where the arrangement changes from step
/// to step, of an eighth from there to a whole 4K screen.
inline std::vector<QSize> readoutGrid() {
    constexpr QSize least(280, 100);
    const auto lengths = [](int from, int fineUntil, int step, int until) {
        std::vector<int> all;
        for (int length = from; length <= until; length += length < fineUntil ? step : length / 8) {
            all.push_back(length);
        }
        return all;
    };
    std::vector<QSize> sizes;
    for (const int width : lengths(least.width(), 700, 17, 3840)) {
        for (const int height : lengths(least.height(), 400, 11, 2160)) {
            sizes.emplace_back(width, height);
        }
    }
    return sizes;
}

template <class View>
QImage readoutPicture(const View& view, const QSize& size, double scale = 1.0,
                      const QColor& ground = TarvaneApp::Theme::panelBackground) {
    QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(ground);
    QPainter painter(&image);
    paint(painter, view, QSizeF(size), pinnedTypeface());
    return image;
}

using ReadoutPartRects = std::vector<std::pair<const char*, QRectF>>;

/// No part touches another or leaves the view. Empty ones aren't there.
inline void expectPartsApart(const ReadoutPartRects& parts, const QSize& size) {
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].second.isEmpty()) {
            continue;
        }
        EXPECT_TRUE(QRectF(QPointF(), size).contains(parts[i].second))
            << parts[i].first << " at " << size.width() << 'x' << size.height();
        for (std::size_t j = i + 1; j < parts.size(); ++j) {
            EXPECT_FALSE(parts[i].second.intersects(parts[j].second))
                << parts[i].first << " and " << parts[j].first << " at " << size.width() << 'x'
                << size.height();
        }
    }
}

/// How many pixels of a drawing on nothing lie outside its parts; `valuePixelSize` is the size of
/// the large value, the first part.
inline int inkOutside(QImage image, const ReadoutPartRects& parts, double valuePixelSize) {
    QPainter eraser(&image);
    eraser.setCompositionMode(QPainter::CompositionMode_Clear);
    // Antialiasing, and round glyphs over the edge of their cells.
    double overhang = 2.0 + valuePixelSize * 0.05;
    for (const auto& [name, rect] : parts) {
        eraser.fillRect(rect.adjusted(-overhang, -overhang, overhang, overhang), Qt::black);
        overhang = 2.0;
    }
    eraser.end();
    int outside = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            outside += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        }
    }
    return outside;
}

/// The leftmost and rightmost pixel of that colour between top and bottom of `rect`.
inline std::pair<int, int> inkSpan(const QImage& image, const QRectF& rect, QRgb color) {
    int left = image.width();
    int right = -1;
    for (int y = static_cast<int>(rect.top()); y < rect.bottom(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
        }
    }
    return {left, right};
}

}  // namespace TarvaneTests
