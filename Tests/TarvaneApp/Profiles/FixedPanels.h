// A user who has made up their mind before a file dialog asks.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Profiles/ProfilePanels.h"

namespace TarvaneTests {

class FixedPanels final : public TarvaneApp::ProfilePanels {
  public:
    std::optional<std::filesystem::path> fileToSave(const std::string& title,
                                                    const std::string& proposedName) override {
        titles.push_back(title);
        proposed = proposedName;
        return chosen.empty() ? std::nullopt : std::optional(chosen.front());
    }
    std::vector<std::filesystem::path> filesToOpen(const std::string& title) override {
        titles.push_back(title);
        return chosen;
    }

    std::vector<std::filesystem::path> chosen;
    std::vector<std::string> titles;
    std::string proposed;
};

}  // namespace TarvaneTests
