// The level history as a panel: its header with the session's extremes above its graph.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

class QLabel;
class QPushButton;

namespace TarvaneApp {

class IconButton;
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

    /// As high as the strip that it is beside graphs.
    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void channelChanged();
    void showChannels();
    void showZoom();
    void showExtremes();
    void showCaption();
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> fixedChannelID_;
    LiveLevelHistoryGraph* graph_;
    MenuButton* channelMenu_;
    QLabel* caption_;
    QPushButton* maxButton_;
    QPushButton* minButton_;
    IconButton* resetButton_;
    MenuButton* zoomMenu_;
};

}  // namespace TarvaneApp
