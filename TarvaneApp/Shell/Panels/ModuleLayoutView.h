// The modules of a window, arranged: the sound level meter on top, below it the graph area, the
// level history as a strip above or below that. The room of a module that is hidden
// or elsewhere goes to the others. Where the window is too low for all of them, the graphs give way
// first, then the history.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

class QVBoxLayout;

namespace TarvaneApp {

class MeterEngine;
class ModuleArrangementLink;
struct ModuleArrangement;

class ModuleLayoutView final : public QWidget {
    Q_OBJECT
  public:
    /// The arrangement outlives the view. All modules show the fixed channel, or without one each
    /// the channel that the engine's settings name for it.
    ModuleLayoutView(MeterEngine& engine, ModuleArrangementLink& arrangement,
                     const std::optional<TarvaneKit::UUID>& fixedChannelID,
                     QWidget* parent = nullptr);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    ModuleArrangement fittingArrangement() const;
    void arrange();

    ModuleArrangementLink& arrangement_;
    QVBoxLayout* column_;
    QWidget* meter_;
    QWidget* meterDivider_;
    QWidget* history_;
    QWidget* historyDivider_;
    QWidget* graphs_;
};

}  // namespace TarvaneApp
