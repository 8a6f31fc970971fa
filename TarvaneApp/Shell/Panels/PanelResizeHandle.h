// The handle between two panels: a line with a grip, dragged across the line, or moved by the
// arrow keys.
#pragma once

#include <QPointF>
#include <QWidget>
#include <functional>
#include <optional>

namespace TarvaneApp {

class PanelResizeHandle final : public QWidget {
    Q_OBJECT
  public:
    struct Actions {
        std::function<void()> begin;
        /// Pixels across the line since the drag began.
        std::function<void(double)> moveBy;
        std::function<void()> reset;
    };
    PanelResizeHandle(Actions actions, QWidget* parent);

    /// The direction in which the line runs.
    void setOrientation(Qt::Orientation orientation);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    double across(const QPointF& point) const {
        return orientation_ == Qt::Horizontal ? point.y() : point.x();
    }

    Actions actions_;
    Qt::Orientation orientation_ = Qt::Horizontal;
    std::optional<QPointF> pressedAt_;
};

}  // namespace TarvaneApp
