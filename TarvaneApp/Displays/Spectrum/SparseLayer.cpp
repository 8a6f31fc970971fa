#include "Displays/Spectrum/SparseLayer.h"

#include "Core/Contract.h"
#include "Displays/PixelBlend.h"

namespace TarvaneApp {

SparseLayer::SparseLayer(const QImage& picture) {
    TARVANE_PRECONDITION(picture.format() == QImage::Format_ARGB32_Premultiplied);
    const int width = picture.width();
    const int height = picture.height();
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        int x = 0;
        while (x < width) {
            const int start = x;
            while (x < width && qAlpha(row[x]) != 0) {
                pixels_.push_back(row[x++]);
            }
            if (x > start) {
                runs_.push_back({start, y, x - start});
            }
            ++x;
        }
    }
}

void SparseLayer::blendInto(QImage& target) const {
    const QRgb* source = pixels_.data();
    uchar* const bits = target.bits();
    const qsizetype bytesPerLine = target.bytesPerLine();
    for (const Run& run : runs_) {
        auto* pixels = reinterpret_cast<QRgb*>(bits + run.y * bytesPerLine) + run.x;
        for (int i = 0; i < run.length; ++i) {
            pixels[i] = PixelBlend::over(pixels[i], *source++, PixelBlend::fullWeight);
        }
    }
}

}  // namespace TarvaneApp
