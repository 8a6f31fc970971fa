#include "Spectrum/SparseLayer.h"

#include "Core/Contract.h"
#include "PixelBlend.h"

namespace TarvaneApp {

SparseLayer::SparseLayer(const QImage& picture) {
    TARVANE_PRECONDITION(picture.format() == QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < picture.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        int x = 0;
        while (x < picture.width()) {
            const int start = x;
            while (x < picture.width() && qAlpha(row[x]) != 0) {
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
    for (const Run& run : runs_) {
        auto* pixels = reinterpret_cast<QRgb*>(target.scanLine(run.y)) + run.x;
        for (int i = 0; i < run.length; ++i) {
            pixels[i] = PixelBlend::over(pixels[i], *source++, PixelBlend::fullWeight);
        }
    }
}

}  // namespace TarvaneApp
