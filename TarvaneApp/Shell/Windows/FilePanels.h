// The desktop's file dialogs, where a file of the user's is saved to or opened.
#pragma once

#include "Profiles/ProfilePanels.h"

namespace TarvaneApp {

class FilePanels final : public ProfilePanels {
  public:
    std::optional<std::filesystem::path> fileToSave(const std::string& title,
                                                    const std::string& proposedName) override;
    std::vector<std::filesystem::path> filesToOpen(const std::string& title) override;
};

}  // namespace TarvaneApp
