// The modules of a window, arranged: the sound level meter on top, below it the graph area, the
// level history as a strip above or below that. A module that is hidden or elsewhere leaves its
// room to the others.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

class QVBoxLayout;

namespace TarvaneApp {

class MeterEngine;
class ModuleArrangementLink;

class ModuleLayoutView final : public QWidget {
    Q_OBJECT
  public:
    /// The arrangement outlives the view. All modules show the fixed channel, or without one each
    /// the channel that the engine's settings name for it.
    ModuleLayoutView(MeterEngine& engine, ModuleArrangementLink& arrangement,
                     const std::optional<TarvaneKit::UUID>& fixedChannelID,
                     QWidget* parent = nullptr);

  private:
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
