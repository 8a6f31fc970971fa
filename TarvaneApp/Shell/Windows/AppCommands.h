// What menus, toolbars and keys can have the application do: open its windows, and quit. A command
// that isn't given does nothing.
#pragma once

#include <functional>

#include "Core/UUID.h"
#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

struct AppCommands {
    std::function<void()> showSettings = [] {};
    std::function<void()> exportLevelHistory = [] {};
    std::function<void()> showProfiles = [] {};  ///< in the settings
    std::function<void(StandaloneModule)> openStandaloneWindow = [](StandaloneModule) {};
    std::function<void(const TarvaneKit::UUID&)> openChannelWindow = [](const TarvaneKit::UUID&) {};
    std::function<void()> openHelp = [] {};
    std::function<void()> openReleaseNotes = [] {};
    std::function<void()> openAbout = [] {};
    /// Of the window that the user is in; where one is open already, it ends.
    std::function<void()> toggleFullScreenMeter = [] {};
    /// Absent in a build that knows no feed, whose menu then has no such item.
    std::function<void()> checkForUpdates = nullptr;
    std::function<void()> quit = [] {};
};

}  // namespace TarvaneApp
