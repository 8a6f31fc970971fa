#include "Shell/Windows/ExtraChannelsMenu.h"

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/MenuItems.h"

namespace TarvaneApp {

ExtraChannelsMenu::ExtraChannelsMenu(MeterEngine& engine, const AppCommands& commands,
                                     QWidget* parent)
    : IconMenuButton(
          Theme::Symbol::toolbar, [this](QMenu& menu) { fill(menu); }, parent),
      engine_(engine),
      commands_(commands) {
    setSymbol(QStringLiteral("square.stack.3d.up"), Theme::axisText);
    setHelp(QStringLiteral("Extra channels"),
            QStringLiteral("Extra channels — open one in its own window"));
    follow(engine.extraChannels, this, [this] { setVisible(!engine_.extraChannels().empty()); });
}

void ExtraChannelsMenu::fill(QMenu& menu) {
    menu.addSection(QStringLiteral("Open in Window"));
    for (const ChannelInfo& channel : engine_.activeChannelInfos()) {
        menu.addAction(menuText(channel.name),
                       [this, id = channel.id] { commands_.openChannelWindow(id); });
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Channel Settings…"), [this] { commands_.showSettings(); });
}

}  // namespace TarvaneApp
