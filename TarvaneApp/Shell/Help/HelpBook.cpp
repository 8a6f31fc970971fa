#include "Shell/Help/HelpBook.h"

#include <algorithm>

#include "Shell/Help/Book/HelpChapters.h"

namespace TarvaneApp {

const std::vector<HelpGroup>& helpGroups() {
    static const std::vector<HelpGroup> groups{
        HelpChapters::basics(), HelpChapters::modules(),   HelpChapters::measuring(),
        HelpChapters::setup(),  HelpChapters::reference(),
    };
    return groups;
}

const std::vector<HelpTopic>& allHelpTopics() {
    static const std::vector<HelpTopic> topics = [] {
        std::vector<HelpTopic> all;
        for (const HelpGroup& group : helpGroups()) {
            all.insert(all.end(), group.topics.begin(), group.topics.end());
        }
        return all;
    }();
    return topics;
}

const HelpTopic* helpTopic(std::string_view title) {
    const auto& topics = allHelpTopics();
    const auto found = std::ranges::find(topics, title, &HelpTopic::title);
    return found != topics.end() ? &*found : nullptr;
}

HelpNeighbors helpNeighbors(std::string_view title) {
    const HelpTopic* topic = helpTopic(title);
    if (topic == nullptr) {
        return {};
    }
    const auto& topics = allHelpTopics();
    return {.previous = topic != &topics.front() ? topic - 1 : nullptr,
            .next = topic != &topics.back() ? topic + 1 : nullptr};
}

}  // namespace TarvaneApp
