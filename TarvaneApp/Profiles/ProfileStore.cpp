#include "Profiles/ProfileStore.h"

#include <fmt/format.h>

#include <QFile>
#include <QStandardPaths>
#include <QString>
#include <chrono>
#include <system_error>
#include <utility>

#include "Engine/Clock.h"
#include "Engine/MeterEngine.h"
#include "Profiles/ProfileName.h"
#include "Profiles/ProfilePanels.h"

namespace TarvaneApp {

namespace fs = std::filesystem;

namespace {

// The window stands meanwhile. What another program does in the folder is done by then.
constexpr std::chrono::milliseconds longestWait{300};

}  // namespace

ProfileStore::ProfileStore(const Environment& environment, QObject* parent)
    : QObject(parent),
      settings_(environment.store),
      profiles(profiles_),
      activeProfileName(activeProfileName_),
      errorMessage(errorMessage_.text()),
      folder_(environment.folder),
      clock_(environment.clock),
      panels_(environment.panels),
      watch_(environment.folder) {
    settings_.loadAll();
    connect(&watch_, &FolderWatch::changed, this, &ProfileStore::reload);
    reload();
}

ProfileStore::~ProfileStore() = default;

fs::path ProfileStore::usersFolder() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return fs::path(QFile::encodeName(data).toStdString()) / "Tarvane" / "Profiles";
}

void ProfileStore::reload() {
    watch_.watchFolder();
    const auto files = folder_.files();
    watch_.watchFiles(files);
    ProfileFolder::Content content = ProfileFolder::read(files);
    fileURLs_ = std::move(content.fileURLs);
    if (content.profiles != profiles_()) {
        profiles_.set(std::move(content.profiles));
    }
    if (activeProfileName_() && !fileURLs_.contains(*activeProfileName_())) {
        activeProfileName_.set(std::nullopt);
    }
}

void ProfileStore::saveCurrent(const MeterEngine& engine, const std::string& name) {
    SettingsProfile profile;
    profile.name = trimmedProfileName(name);
    if (profile.name.empty()) {
        return;
    }
    profile.savedAt = clock_.now();
    profile.settings = engine.captureSettings();
    if (write(profile, Naming::replaces)) {
        activeProfileName_.set(profile.name);
    }
}

bool ProfileStore::write(SettingsProfile profile, Naming naming) {
    ProfileFolder::Problem problem = folder_.create();
    if (!problem) {
        const FileLock held = lock();
        reload();
        if (naming == Naming::adds) {
            profile.name = uniqueName(profile.name);
        }
        const auto known = fileURLs_.find(profile.name);
        problem = ProfileFolder::write(
            profile, known != fileURLs_.end() ? known->second : folder_.newFileURL(profile.name));
    }
    if (problem) {
        tell("save", profile.name, *problem);
        return false;
    }
    reload();
    return true;
}

FileLock ProfileStore::lock() const {
    fs::path path = folder_.path();
    path += ".lock";
    return {QFile::decodeName(path.c_str()),
            [](std::chrono::milliseconds waited) { return waited < longestWait; }};
}

void ProfileStore::load(const SettingsProfile& profile, MeterEngine& engine) {
    const std::string name = profile.name;  // the list that it may be of follows the folder
    engine.applySettings(profile.settings, includeAudioAndCalibration());
    activeProfileName_.set(name);
}

void ProfileStore::remove(const SettingsProfile& profile) {
    const std::string name = profile.name;
    {
        const FileLock held = lock();
        reload();
        if (const auto known = fileURLs_.find(name); known != fileURLs_.end()) {
            std::error_code error;
            fs::remove(known->second, error);
            if (error) {
                tell("delete", name, error.message());
            }
        }
    }
    reload();
}

void ProfileStore::exportProfile(const SettingsProfile& profile) {
    const SettingsProfile exported = profile;  // the list may change while the panel is open
    const auto file = panels_.fileToSave("Export Profile", ProfileFolder::fileName(exported.name));
    if (!file) {
        return;
    }
    if (const auto problem = ProfileFolder::write(exported, *file)) {
        tell("export", exported.name, *problem);
    }
}

void ProfileStore::importProfiles() {
    std::string rejected;
    for (const fs::path& file : panels_.filesToOpen("Import Profiles")) {
        auto profile = SettingsProfile::read(file);
        if (profile && !trimmedProfileName(profile->name).empty()) {
            write(*std::move(profile), Naming::adds);
        } else {
            rejected += (rejected.empty() ? "" : ", ") + file.filename().string();
        }
    }
    if (!rejected.empty()) {
        errorMessage_.tell("Not a valid Tarvane profile: " + rejected);
    }
}

std::string ProfileStore::uniqueName(const std::string& name) const {
    std::string result = name;
    for (int number = 2; fileURLs_.contains(result); ++number) {
        result = fmt::format("{} ({})", name, number);
    }
    return result;
}

void ProfileStore::tell(const std::string& what, const std::string& name, const std::string& why) {
    errorMessage_.tell(fmt::format("Couldn't {} \"{}\": {}", what, name, why));
}

}  // namespace TarvaneApp
