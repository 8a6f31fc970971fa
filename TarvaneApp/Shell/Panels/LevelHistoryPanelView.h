// The level history as a panel: its header with the session's extremes above its graph.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

class QCheckBox;
class QLabel;

namespace TarvaneApp {

class IconButton;
class LevelHistoryOverlayMenu;
class LiveLevelHistoryGraph;
class MenuButton;
class MeterEngine;

class LevelHistoryPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the fixed channel; without one the channel that the engine's `levelHistoryChannelID`
    /// names, else the meter's.
    LevelHistoryPanelView(MeterEngine& engine,
                          const std::optional<TarvaneKit::UUID>& fixedChannelID,
                          QWidget* parent = nullptr);

    /// The height of the strip above or below the graphs.
    QSize sizeHint() const override;

  private:
    void channelChanged();
    void showZoom();
    void showMetric();
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> fixedChannelID_;
    LiveLevelHistoryGraph* graph_;
    LevelHistoryOverlayMenu* overlayMenu_;
    QLabel* caption_;
    QCheckBox* momentary_;
    IconButton* resetButton_;
    MenuButton* zoomMenu_;
};

}  // namespace TarvaneApp
