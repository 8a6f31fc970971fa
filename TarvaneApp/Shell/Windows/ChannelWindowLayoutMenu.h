// The button of a channel's window that opens the controls of its layout.
#pragma once

#include "Core/UUID.h"
#include "Shell/Controls/IconButton.h"

namespace TarvaneApp {

class MeterEngine;
class PopoverPresentationState;

class ChannelWindowLayoutMenu final : public IconButton {
    Q_OBJECT
  public:
    ChannelWindowLayoutMenu(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                            QWidget* parent = nullptr);
    ~ChannelWindowLayoutMenu() override;

    PopoverPresentationState& popover() { return *popover_; }

  private:
    std::unique_ptr<PopoverPresentationState> popover_;
};

}  // namespace TarvaneApp
