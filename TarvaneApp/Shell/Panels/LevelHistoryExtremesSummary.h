// The session's maximum and minimum as two buttons, which show their moments in the graph.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class LiveLevelHistoryGraph;

class LevelHistoryExtremesSummary final : public QWidget {
    Q_OBJECT
  public:
    /// `graph` lives as long as this.
    explicit LevelHistoryExtremesSummary(LiveLevelHistoryGraph& graph, QWidget* parent = nullptr);

  private:
    class Button;
    void showExtremes();

    LiveLevelHistoryGraph& graph_;
    Button* max_;
    Button* min_;
};

}  // namespace TarvaneApp
