// The modules of a window, arranged: the sound level meter on top, below it the graph area, the
// level history as a strip above or below that. The room of a module that is hidden
// or elsewhere goes to the others. Where the window is too low for all of them, the graphs give way
// first, then the history. The meter's height follows the window's, and a handle under it moves it.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

class QVBoxLayout;

namespace TarvaneApp {

class MeterEngine;
class ModuleArrangementLink;
class PanelResizeHandle;
class SPLMeterPanelView;
struct ModuleArrangement;

class ModuleLayoutView final : public QWidget {
    Q_OBJECT
  public:
    /// The arrangement outlives the view. All modules show the fixed channel, or without one each
    /// the channel that the engine's settings name for it.
    ModuleLayoutView(MeterEngine& engine, ModuleArrangementLink& arrangement,
                     const std::optional<TarvaneKit::UUID>& fixedChannelID,
                     QWidget* parent = nullptr);

    /// The meter's share of the height, where the user has moved its handle.
    std::optional<double> meterShare() const { return meterShare_; }
    /// Absent, the meter is as high as it is by itself.
    void setMeterShare(std::optional<double> share);

  Q_SIGNALS:
    void meterShareChanged();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    ModuleArrangement fittingArrangement() const;
    int leastHeight(const ModuleArrangement& shown) const;
    int withinReach(double meterHeight, const ModuleArrangement& shown) const;
    void arrange();

    ModuleArrangementLink& arrangement_;
    QVBoxLayout* column_;
    SPLMeterPanelView* meter_;
    PanelResizeHandle* meterHandle_;
    QWidget* history_;
    QWidget* historyDivider_;
    QWidget* graphs_;
    std::optional<double> meterShare_;
    int meterHeightAtPress_ = 0;
};

}  // namespace TarvaneApp
