// Where the user is asked for files. The windows have it; the store knows none.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace TarvaneApp {

class ProfilePanels {
  public:
    virtual ~ProfilePanels() = default;

    // Both for JSON files, and empty when the user cancels.

    virtual std::optional<std::filesystem::path> fileToSave(const std::string& title,
                                                            const std::string& proposedName) = 0;
    /// In the panel's order.
    virtual std::vector<std::filesystem::path> filesToOpen(const std::string& title) = 0;
};

}  // namespace TarvaneApp
