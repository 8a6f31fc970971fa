// The folder of profiles as files: which of them are profiles, what a new one is called, and how
// one is written. A profile's name is inside its file; the file's own name is a hint for people.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Profiles/SettingsProfile.h"

namespace TarvaneApp {

class ProfileFolder {
  public:
    explicit ProfileFolder(std::filesystem::path path) : path_(std::move(path)) {}

    const std::filesystem::path& path() const { return path_; }

    /// All that may be or become a profile, in the order of the files' names. None of a folder that
    /// can't be listed.
    std::vector<std::filesystem::path> files() const;

    struct Content {
        /// In the order in which people count: "Profile 2" ahead of "Profile 10".
        std::vector<SettingsProfile> profiles;
        std::map<std::string, std::filesystem::path> fileURLs;  ///< by the profile's name
    };
    /// The profiles among the files; of two with one name the first.
    static Content read(const std::vector<std::filesystem::path>& files);

    /// Why something failed, in words that end a sentence.
    using Problem = std::optional<std::string>;

    Problem create() const;
    /// A location that no file has, named after the profile.
    std::filesystem::path newFileURL(const std::string& name) const;

    /// What a profile's file is called where nothing stands in its way.
    static std::string fileName(const std::string& profileName);

    /// Whole or not at all: with a problem the old file is as it was. Without, the new one is on
    /// the disk.
    static Problem write(const SettingsProfile& profile, const std::filesystem::path& file);

  private:
    std::filesystem::path path_;
};

}  // namespace TarvaneApp
