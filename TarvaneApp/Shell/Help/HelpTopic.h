// A topic of the help, and a group of topics. A topic is known by its title.
#pragma once

#include <string>
#include <vector>

#include "Shell/Help/HelpBlock.h"

namespace TarvaneApp {

struct HelpTopic {
    std::string title;
    std::string symbol;  ///< an icon's name
    std::string summary;
    std::vector<HelpBlock> blocks;
};

struct HelpGroup {
    std::string title;
    std::vector<HelpTopic> topics;
};

}  // namespace TarvaneApp
