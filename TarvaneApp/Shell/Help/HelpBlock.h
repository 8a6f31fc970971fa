// One element of a help topic. Every text may hold **bold** words (Prose), and no other mark-up.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace TarvaneApp {

namespace HelpBlocks {

struct Paragraph {
    std::string text;
};

struct Heading {
    std::string text;
};

struct Steps {
    std::vector<std::string> items;
};

struct Bullets {
    std::vector<std::string> items;
};

/// What is easily overlooked, set apart from the text.
struct Tip {
    std::string text;
};

struct Shortcut {
    std::string keys;
    std::string action;
};

struct Shortcuts {
    std::vector<Shortcut> rows;
};

}  // namespace HelpBlocks

using HelpBlock = std::variant<HelpBlocks::Paragraph, HelpBlocks::Heading, HelpBlocks::Steps,
                               HelpBlocks::Bullets, HelpBlocks::Tip, HelpBlocks::Shortcuts>;

/// All strings of the block, as they are written, in the order of reading.
std::vector<std::string> textsOf(const HelpBlock& block);

}  // namespace TarvaneApp
