// The spectrogram as a panel: its header above its picture and the picture's frequency axis. Where
// the header has no room for the sliders, a button opens them.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class IconButton;
class LiveSpectrogramView;
class MeterEngine;
class PanelHeader;
class SpectrogramControls;

class SpectrogramPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the channel that the engine's `spectrogramChannelID` names.
    explicit SpectrogramPanelView(MeterEngine& engine, QWidget* parent = nullptr);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void openControls();

    MeterEngine& engine_;
    LiveSpectrogramView* picture_;
    PanelHeader* header_;
    SpectrogramControls* controls_;
    IconButton* adjustButton_;
};

}  // namespace TarvaneApp
