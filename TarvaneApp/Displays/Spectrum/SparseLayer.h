// A layer that covers little of a picture (labels, a dashed curve), kept as its runs of visible
// pixels: drawn once, then blended into each frame.
#pragma once

#include <QImage>
#include <vector>

namespace TarvaneApp {

class SparseLayer {
  public:
    SparseLayer() = default;
    /// Takes what is visible of a picture in ARGB32_Premultiplied.
    explicit SparseLayer(const QImage& picture);

    /// `target` is opaque, of the picture's size.
    void blendInto(QImage& target) const;

  private:
    struct Run {
        int x;
        int y;
        int length;
    };
    std::vector<Run> runs_;
    std::vector<QRgb> pixels_;  // of all runs, one after another
};

}  // namespace TarvaneApp
