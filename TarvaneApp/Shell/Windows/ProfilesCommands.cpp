#include "Shell/Windows/ProfilesCommands.h"

#include <QActionGroup>
#include <QMenu>

#include "Profiles/ProfileStore.h"
#include "Shell/Controls/MenuItems.h"

namespace TarvaneApp::ProfilesCommands {

void addProfiles(QMenu& menu, ProfileStore& profiles, MeterEngine& engine) {
    if (profiles.profiles().empty()) {
        menu.addAction(QStringLiteral("No Saved Profiles"))->setEnabled(false);
    }
    QActionGroup* group = nullptr;
    for (const SettingsProfile& profile : profiles.profiles()) {
        QAction* item = menu.addAction(menuText(profile.name), [&profiles, &engine, profile] {
            profiles.load(profile, engine);
        });
        item->setCheckable(true);
        // It goes with the items.
        group = group != nullptr ? group : new QActionGroup(item);
        group->addAction(item);
        item->setChecked(profile.name == profiles.activeProfileName());
    }
}

void addSaveToCurrent(QMenu& menu, ProfileStore& profiles, MeterEngine& engine) {
    const auto active = profiles.activeProfileName();
    if (!active) {
        menu.addAction(QStringLiteral("Save to Current Profile"))->setEnabled(false);
        return;
    }
    menu.addAction(QStringLiteral("Save to \"%1\"").arg(menuText(*active)),
                   [&profiles, &engine, name = *active] { profiles.saveCurrent(engine, name); });
}

void addManage(QMenu& menu, const AppCommands& commands) {
    menu.addAction(QStringLiteral("Manage Profiles…"), commands.showProfiles);
}

}  // namespace TarvaneApp::ProfilesCommands
