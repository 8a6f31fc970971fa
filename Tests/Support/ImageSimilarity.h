// How alike two pictures are.
#pragma once

#include <QImage>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace TarvaneTests {

/// Peak signal to noise ratio over all three colours: 10 log10(255² / mean square difference).
/// Infinite for equal pictures, minus infinity for pictures of different sizes.
inline double peakSignalToNoiseDB(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) {
        return -std::numeric_limits<double>::infinity();
    }
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const double red = qRed(p) - qRed(q);
            const double green = qGreen(p) - qGreen(q);
            const double blue = qBlue(p) - qBlue(q);
            sum += red * red + green * green + blue * blue;
        }
    }
    const double meanSquare = sum / (3.0 * a.width() * a.height());
    return 10.0 * std::log10(255.0 * 255.0 / meanSquare);
}

/// In the colour that differs most, 0 to 255. The pictures are of one size.
inline int largestDifference(const QImage& a, const QImage& b) {
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(p) - qRed(q)),
                                std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

}  // namespace TarvaneTests
