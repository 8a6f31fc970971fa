// The book: all that the help window shows, made once, and the order in which it is read.
#pragma once

#include <string_view>
#include <vector>

#include "Shell/Help/HelpTopic.h"

namespace TarvaneApp {

const std::vector<HelpGroup>& helpGroups();

/// The topics of all groups, one after another.
const std::vector<HelpTopic>& allHelpTopics();

/// Null where no topic has the title.
const HelpTopic* helpTopic(std::string_view title);

/// The topics before and after one. Null at the book's ends, and both for a title that no topic
/// has.
struct HelpNeighbors {
    const HelpTopic* previous = nullptr;
    const HelpTopic* next = nullptr;
};
HelpNeighbors helpNeighbors(std::string_view title);

}  // namespace TarvaneApp
