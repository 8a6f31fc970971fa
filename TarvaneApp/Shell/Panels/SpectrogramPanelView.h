// The spectrogram as a panel: its header above its picture and the picture's frequency axis. Where
// the header has no room for the sliders, a button opens them.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"
#include "Shell/Controls/PopoverPresentationState.h"

namespace TarvaneApp {

class IconButton;
class LiveSpectrogramView;
class MeterEngine;
class ModuleArrangementLink;
class PanelHeader;
class SpectrogramControls;

class SpectrogramPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the fixed channel, or without one the channel that the engine's
    /// `spectrogramChannelID` names. `arrangement` is what its expand button changes, and outlives
    /// the panel; null where the panel fills its window.
    SpectrogramPanelView(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& fixedChannelID,
                         ModuleArrangementLink* arrangement, QWidget* parent = nullptr);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> fixedChannelID_;
    LiveSpectrogramView* picture_;
    PanelHeader* header_;
    SpectrogramControls* controls_;
    IconButton* adjustButton_;
    PopoverPresentationState adjustPopover_;
};

}  // namespace TarvaneApp
