// The clock on the screen. It runs by its own timer while it is visible, whether anything is
// measured or not, and repaints only the parts that look different. Main thread.
#pragma once

#include <QTimer>
#include <QWidget>

#include "Displays/Readouts/ClockReadoutView.h"
#include "LiveDisplays/LiveAccessibility.h"

namespace TarvaneApp {

class LiveClockReadoutView final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    explicit LiveClockReadoutView(QWidget* parent = nullptr);

    const ClockReadoutView& view() const { return view_; }
    /// Whether it waits for the next second.
    bool isTicking() const { return timer_.isActive(); }

    std::vector<SpokenPart> spokenParts() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void tick();
    void updateFrame();

    QTimer timer_;
    ClockReadoutView view_;
    QRectF plate_;
    ReadoutFrame frame_;
};

}  // namespace TarvaneApp
