// The analyzer as a panel: its header above its graph.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"
#include "Shell/Controls/PopoverPresentationState.h"

namespace TarvaneApp {

class IconButton;
class LiveSpectrumView;
class MenuButton;
class MeterEngine;
class ModuleArrangementLink;
class RTAOverlayMenu;
class ReadoutUnitPicker;

class RTAPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the fixed channel, or without one the channel that the engine's `rtaChannelID` names,
    /// and the overlays over it. `arrangement` is what its expand button changes, and outlives the
    /// panel; null where the panel fills its window.
    RTAPanelView(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& fixedChannelID,
                 ModuleArrangementLink* arrangement, QWidget* parent = nullptr);

    /// Left free under the graph.
    void setBottomMargin(int pixels);

  private:
    void showAveraging();
    void channelChanged();
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> fixedChannelID_;
    LiveSpectrumView* graph_;
    MenuButton* averaging_;
    ReadoutUnitPicker* unitPicker_;
    RTAOverlayMenu* overlayMenu_;
    IconButton* optionsButton_;
    PopoverPresentationState optionsPopover_;
};

}  // namespace TarvaneApp
