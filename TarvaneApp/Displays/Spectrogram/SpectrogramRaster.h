// The fast drawing of the spectrogram into a picture, for windows that show it sixty times a
// second: each row is coloured and scaled to the picture's width once, when it arrives, and a frame
// only blends rows vertically. The grid lines are blended into each row too, which gives the same
// picture as blending them over it. Enlarged, neighbouring rows are blended; reduced, all rows that
// fall into a line are averaged, so that a short sound is never lost between two lines.
//
// One raster per view, kept from frame to frame with all its storage. Main thread.
#pragma once

#include <QImage>
#include <cstdint>
#include <vector>

#include "Displays/Spectrogram/SpectrogramRasterCache.h"
#include "Displays/Spectrogram/SpectrogramView.h"

namespace TarvaneApp {

class SpectrogramRaster {
  public:
    /// The plot in RGB32, with `pixelRatio` device pixels per logical one. The same picture as
    /// before, at no cost, where nothing changed. Valid until the next call. Null for a size
    /// without pixels.
    const QImage& image(const SpectrogramView& view, const QSizeF& size, double pixelRatio);

    /// How many rows were coloured since the raster was made.
    std::int64_t rowsPainted() const { return rowsPainted_; }

  private:
    // The cells or rows that make a pixel or line: `count` of them from `first` on, with weights
    // that sum up to PixelBlend::fullWeight.
    struct Share {
        int first;
        int count;
        std::size_t firstWeight;
    };
    struct Resampling {
        int from = 0;
        int to = 0;
        std::vector<Share> shares;
        std::vector<std::uint16_t> weights;
    };
    static void prepare(Resampling& resampling, int from, int to);

    void widen(int slot);
    void blendRows();
    bool prepareShape(const SpectrogramView& view, const QSizeF& size, double pixelRatio);
    void prepareRules(const SpectrogramView& view, const QSizeF& size);

    SpectrogramRasterCache cache_;
    QImage image_;
    QSizeF size_;
    double minHz_ = 0.0;
    double maxHz_ = 0.0;
    bool hasRows_ = false;
    std::int64_t rowsPainted_ = 0;
    // The pixels of the grid lines in a row, premultiplied.
    struct RulePixel {
        int x;
        QRgb color;
    };
    std::vector<RulePixel> rules_;
    Resampling across_;
    Resampling down_;
    std::vector<QRgb> wideRows_;  // by slot of the cache
    std::vector<std::uint16_t> sums_;
};

}  // namespace TarvaneApp
