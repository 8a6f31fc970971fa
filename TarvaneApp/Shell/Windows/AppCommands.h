// What menus, toolbars and keys ask of the application: its windows by name, and its end. One that
// isn't given does nothing.
#pragma once

#include <functional>

#include "Core/UUID.h"
#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

struct AppCommands {
    std::function<void()> showSettings = [] {};
    std::function<void(StandaloneModule)> openStandaloneWindow = [](StandaloneModule) {};
    std::function<void(const TarvaneKit::UUID&)> openChannelWindow = [](const TarvaneKit::UUID&) {};
    std::function<void()> quit = [] {};
};

}  // namespace TarvaneApp
