#include "Shell/Windows/ProfileMenu.h"

#include <QMenu>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Profiles/ProfileStore.h"
#include "Shell/Windows/AppCommands.h"
#include "Shell/Windows/ProfilesCommands.h"

namespace TarvaneApp {

ProfileMenu::ProfileMenu(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands,
                         QWidget* parent)
    : IconTextMenuButton(
          Theme::Symbol::toolbar,
          [&engine, &profiles, commands](QMenu& menu) {
              ProfilesCommands::addProfiles(menu, profiles, engine);
              menu.addSeparator();
              ProfilesCommands::addManage(menu, commands);
          },
          parent) {
    setSymbol(QStringLiteral("person.crop.circle"), Theme::axisText);
    follow(profiles.activeProfileName, this, [this, &profiles] {
        const auto active = profiles.activeProfileName();
        const QString name = active ? utf8Text(*active) : QStringLiteral("No Profile");
        setText(name);
        setHelp(QStringLiteral("Profile: ") + name,
                QStringLiteral("Settings profile — click to switch"));
    });
}

}  // namespace TarvaneApp
