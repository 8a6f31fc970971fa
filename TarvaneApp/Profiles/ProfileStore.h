// The user's profiles: the list that follows the folder, the one in use, and what can be done with
// them. Forms and menus show its state; nothing throws.
//
// Two programs may work in one folder. Whoever saves looks first what is there, alone by a lock
// beside the folder, so that a name that the other one has just given is known.
//
// Main thread only. Files are read and written at once: they are small.
#pragma once

#include <QObject>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Engine/ErrorMessage.h"
#include "Profiles/FolderWatch.h"
#include "Profiles/ProfileFolder.h"
#include "Profiles/SettingsProfile.h"
#include "Settings/FileLock.h"
#include "Settings/Observable.h"
#include "Settings/Published.h"
#include "Settings/Setting.h"

namespace TarvaneApp {

class Clock;
class KeyValueStore;
class MeterEngine;
class ProfilePanels;

class ProfileStore : public QObject {
    Q_OBJECT

    // Ahead of what shows their state.
    SettingsRegistry settings_;
    Setting<std::optional<std::string>> activeProfileName_{settings_, "activeProfileName",
                                                           std::nullopt};
    Published<std::vector<SettingsProfile>> profiles_;
    ErrorMessage errorMessage_;

  public:
    /// All of it outlives this.
    struct Environment {
        std::filesystem::path folder;
        KeyValueStore& store;
        const Clock& clock;
        ProfilePanels& panels;
    };
    /// Reads the folder.
    explicit ProfileStore(const Environment& environment, QObject* parent = nullptr);
    ~ProfileStore() override;

    /// "Tarvane/Profiles" in the user's XDG data folder.
    static std::filesystem::path usersFolder();

    /// Where the profiles' files are; it comes to be with the first of them.
    const std::filesystem::path& folder() const { return folder_.path(); }

    /// Those of the folder, in the order in which people count.
    const Observable<std::vector<SettingsProfile>>& profiles;
    /// What was saved or loaded last, as long as it is there. Settings may have changed since.
    const Observable<std::optional<std::string>>& activeProfileName;
    /// A finished sentence for the user; dismissing it makes it absent, or brings the next one.
    const Observable<std::optional<std::string>>& errorMessage;
    /// Whether loading brings inputs and calibrations too.
    Setting<bool> includeAudioAndCalibration{settings_, "profilesIncludeAudioAndCalibration", true};
    /// What stands in the form's field.
    Published<std::string> newProfileName;

    void reload();
    /// Replaces a profile of that name. A name of white space alone does nothing.
    void saveCurrent(const MeterEngine& engine, const std::string& name);
    void load(const SettingsProfile& profile, MeterEngine& engine);
    void remove(const SettingsProfile& profile);
    void exportProfile(const SettingsProfile& profile);
    /// None takes the place of another.
    void importProfiles();
    void dismissError() { errorMessage_.dismiss(); }

    /// The name, or with " (2)" and so on the first that no profile has.
    std::string uniqueName(const std::string& name) const;

  private:
    /// Whether a profile takes the place of the one of its name, or another name.
    enum class Naming { replaces, adds };
    bool write(SettingsProfile profile, Naming naming);
    /// Sees that no other program writes there as long as it lives.
    FileLock lock() const;
    /// What couldn't be done with the profile of that name, and why.
    void tell(const std::string& what, const std::string& name, const std::string& why);

    const ProfileFolder folder_;
    const Clock& clock_;
    ProfilePanels& panels_;
    FolderWatch watch_;
    std::map<std::string, std::filesystem::path> fileURLs_;
};

}  // namespace TarvaneApp
