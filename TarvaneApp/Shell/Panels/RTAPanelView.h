// The analyzer as a panel: its header above its graph.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class LiveSpectrumView;
class MenuButton;
class MeterEngine;
class ReadoutUnitPicker;

class RTAPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the channel that the engine's `rtaChannelID` names, and the overlays over it.
    explicit RTAPanelView(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void showAveraging();

    MeterEngine& engine_;
    LiveSpectrumView* graph_;
    MenuButton* averaging_;
    ReadoutUnitPicker* unitPicker_;
};

}  // namespace TarvaneApp
