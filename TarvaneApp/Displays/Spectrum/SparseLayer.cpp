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
            const auto source = static_cast<std::ptrdiff_t>(pixels_.size());
            while (x < width && qAlpha(row[x]) != 0) {
                pixels_.push_back(row[x++]);
            }
            if (x > start) {
                runs_.push_back({start, y, x - start, source});
            }
            ++x;
        }
    }
}

void SparseLayer::blend(QRgb* target, const QRgb* source, int count) {
    for (int i = 0; i < count; ++i) {
        target[i] = PixelBlend::over(target[i], source[i], PixelBlend::fullWeight);
    }
}

}  // namespace TarvaneApp
