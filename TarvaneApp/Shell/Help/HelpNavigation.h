// Which topic the help window shows. The window owns it; sidebar and pages set it. Main thread.
#pragma once

#include <optional>
#include <string>

#include "Settings/Published.h"

namespace TarvaneApp {

class HelpNavigation {
  public:
    /// A topic's title, or none.
    Published<std::optional<std::string>> selection;
};

}  // namespace TarvaneApp
