// The level history as a panel: its header with the session's extremes above its graph.
#pragma once

#include <QWidget>

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
    /// Shows the channel that the engine's `levelHistoryChannelID` names, else the meter's.
    explicit LevelHistoryPanelView(MeterEngine& engine, QWidget* parent = nullptr);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void channelChanged();
    void showChannels();
    void showZoom();
    void showExtremes();
    void showCaption();

    MeterEngine& engine_;
    LiveLevelHistoryGraph* graph_;
    MenuButton* channelMenu_;
    QLabel* caption_;
    QPushButton* maxButton_;
    QPushButton* minButton_;
    IconButton* resetButton_;
    MenuButton* zoomMenu_;
};

}  // namespace TarvaneApp
