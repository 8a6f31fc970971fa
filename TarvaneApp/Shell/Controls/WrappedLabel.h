// A paragraph of plain text: as wide as it gets room, and just as high as its lines then are.
#pragma once

#include <QColor>
#include <QLabel>

namespace TarvaneApp {

class WrappedLabel : public QLabel {
    Q_OBJECT
  public:
    /// `size` in logical pixels.
    WrappedLabel(double size, const QColor& color, QWidget* parent = nullptr);

    // The toolkit's own would ask for the height of a narrow column, whatever the width.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

}  // namespace TarvaneApp
