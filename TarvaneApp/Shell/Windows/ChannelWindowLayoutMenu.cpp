#include "Shell/Windows/ChannelWindowLayoutMenu.h"

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/PopoverPresentationState.h"
#include "Shell/Windows/ChannelWindowLayoutControls.h"

namespace TarvaneApp {

ChannelWindowLayoutMenu::ChannelWindowLayoutMenu(MeterEngine& engine,
                                                 const TarvaneKit::UUID& channelID, QWidget* parent)
    : IconButton(Theme::Symbol::toolbar, parent),
      popover_(
          std::make_unique<PopoverPresentationState>(*this, [&engine, channelID](QWidget* popover) {
              return new ChannelWindowLayoutControls(engine, channelID, popover);
          })) {
    setSymbol(QStringLiteral("rectangle.3.group"), Theme::axisText);
    setHelp(QStringLiteral("Layout"),
            QStringLiteral("Choose which modules this window shows and how they're arranged"));
}

ChannelWindowLayoutMenu::~ChannelWindowLayoutMenu() = default;

}  // namespace TarvaneApp
