// The area of the two graphs in a window: analyzer and spectrogram, above or beside each other
// with a handle between them, or one of them alone. Where it is too small for both, the first has
// it, and a line under it says so.
#pragma once

#include <QRect>
#include <QSize>
#include <QWidget>
#include <optional>

#include "Core/UUID.h"
#include "Records/LayoutEnums.h"

namespace TarvaneApp {

class ElidedLabel;
class MeterEngine;
class ModuleArrangementLink;
class PanelResizeHandle;
class RTAPanelView;

/// Where the panels of a split area are. The first is never smaller than 60 pixels high, or 80
/// wide beside each other; the second takes the rest.
struct SplitGeometry {
    QRect first;
    QRect handle;
    QRect second;

    static constexpr int handleThickness = 9;

    static SplitGeometry make(const QSize& area, GraphOrientation orientation,
                              double firstFraction);
};

/// Turns the first panel's share of the area into the analyzer's, and back.
double swappedForOrder(double fraction, GraphOrder order);

class GraphArea final : public QWidget {
    Q_OBJECT
  public:
    /// The arrangement outlives the area. Without a fixed channel the graphs follow the engine's.
    GraphArea(MeterEngine& engine, ModuleArrangementLink& arrangement,
              const std::optional<TarvaneKit::UUID>& fixedChannelID, QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void arrange();

    ModuleArrangementLink& arrangement_;
    RTAPanelView* rta_;
    QWidget* spectrogram_;
    PanelResizeHandle* handle_;
    ElidedLabel* missingNote_;
    double fractionAtPress_ = 0.0;
};

}  // namespace TarvaneApp
