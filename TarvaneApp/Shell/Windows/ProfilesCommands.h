// The profiles as items of a menu: the saved ones to load, and what can be saved.
#pragma once

#include "Shell/Windows/AppCommands.h"

class QMenu;

namespace TarvaneApp {

class MeterEngine;
class ProfileStore;

namespace ProfilesCommands {

/// The saved profiles, the one in use checked; "No Saved Profiles" without any.
void addProfiles(QMenu& menu, ProfileStore& profiles, MeterEngine& engine);
/// Saving under the name in use.
void addSaveToCurrent(QMenu& menu, ProfileStore& profiles, MeterEngine& engine);
void addManage(QMenu& menu, const AppCommands& commands);

}  // namespace ProfilesCommands

}  // namespace TarvaneApp
