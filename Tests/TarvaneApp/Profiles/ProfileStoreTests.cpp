#include "Profiles/ProfileStore.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Core/TextFile.h"
#include "Support/FullDisk.h"
#include "Support/TemporaryFolder.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/FixedPanels.h"

namespace TarvaneApp {
namespace ProfileStoreTests {

namespace fs = std::filesystem;
using TarvaneTests::FixedPanels;

class ProfileStoreTests : public TarvaneTests::EngineFixture {
  protected:
    ProfileStoreTests() { makeStore(); }

    /// Also what a restart of the program is.
    void makeStore() {
        profiles.reset();
        profiles = std::make_unique<ProfileStore>(environment());
    }
    ProfileStore::Environment environment() {
        return {.folder = folder, .store = store, .clock = clock, .panels = panels};
    }

    void save(const std::string& name) { profiles->saveCurrent(*engine, name); }
    const SettingsProfile& profile(const std::string& name) const {
        return *std::ranges::find(profiles->profiles(), name, &SettingsProfile::name);
    }
    std::vector<std::string> names() const { return namesOf(*profiles); }
    static std::vector<std::string> namesOf(const ProfileStore& store) {
        std::vector<std::string> names;
        for (const SettingsProfile& profile : store.profiles()) {
            names.push_back(profile.name);
        }
        return names;
    }
    std::vector<std::string> fileNames() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    static std::string textOf(const std::string& name) {
        SettingsProfile profile;
        profile.name = name;
        return profile.text().value();
    }
    fs::path import(const std::string& fileName, const std::string& text) {
        panels.chosen = {temporary.write(fileName, text)};
        profiles->importProfiles();
        return panels.chosen.front();
    }

    using Names = std::vector<std::string>;

    const TarvaneTests::TemporaryFolder temporary;
    const fs::path folder = temporary.path() / "Tarvane" / "Profiles";
    FixedPanels panels;
    std::unique_ptr<ProfileStore> profiles;
};

TEST_F(ProfileStoreTests, beforeTheFirstSaveThereIsNothing) {
    EXPECT_TRUE(profiles->profiles().empty());
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    EXPECT_TRUE(profiles->includeAudioAndCalibration());
    EXPECT_EQ(profiles->newProfileName(), "");
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(ProfileStoreTests, aSetupComesBack) {
    engine->viewMode.set(SpectrumViewMode::line);
    save(" \tShow\n");
    EXPECT_EQ(names(), Names{"Show"});
    EXPECT_EQ(profiles->activeProfileName(), "Show");
    EXPECT_EQ(store.text("Tarvane.activeProfileName"), "Show");
    EXPECT_TRUE(store.isFlushed());
    EXPECT_EQ(profile("Show").format, 1);
    EXPECT_EQ(profile("Show").savedAt, clock.now());
    EXPECT_EQ(profile("Show").settings, engine->captureSettings());
    engine->viewMode.set(SpectrumViewMode::banded);
    save("Other");
    profiles->load(profile("Show"), *engine);
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::line);
    EXPECT_EQ(profiles->activeProfileName(), "Show");

    makeStore();
    EXPECT_EQ(names(), (Names{"Other", "Show"}));
    EXPECT_EQ(profiles->activeProfileName(), "Show");
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
}

TEST_F(ProfileStoreTests, theSwitchSaysWhetherInputsAreLoaded) {
    engine->selectedDeviceUID.set("desk");
    save("Desk");
    engine->selectedDeviceUID.set("mic");
    profiles->includeAudioAndCalibration.set(false);
    profiles->load(profile("Desk"), *engine);
    EXPECT_EQ(engine->selectedDeviceUID(), "mic");
    makeStore();
    EXPECT_FALSE(profiles->includeAudioAndCalibration());
    profiles->includeAudioAndCalibration.set(true);
    profiles->load(profile("Desk"), *engine);
    EXPECT_EQ(engine->selectedDeviceUID(), "desk");
}

TEST_F(ProfileStoreTests, damagedKeysGiveTheDefaults) {
    store.setText("Tarvane.profilesIncludeAudioAndCalibration", "false");
    store.setNumber("Tarvane.activeProfileName", 1.0);
    makeStore();
    EXPECT_TRUE(profiles->includeAudioAndCalibration());
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    store.setText("Tarvane.activeProfileName", "of a folder that was cleared");
    makeStore();
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    EXPECT_FALSE(store.contains("Tarvane.activeProfileName"));
}

TEST_F(ProfileStoreTests, aNameOfSpacesSavesNothingAndShowsNothing) {
    save("");
    save("   ");
    save("\n\t \xC2\xA0");
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
}

TEST_F(ProfileStoreTests, savingAgainReplaces) {
    save("Show");
    engine->viewMode.set(SpectrumViewMode::banded);
    clock.advance(60.0);
    save("Show");
    EXPECT_EQ(fileNames(), Names{"Show.json"});
    EXPECT_EQ(names(), Names{"Show"});
    EXPECT_EQ(profile("Show").settings.viewMode, SpectrumViewMode::banded);
    EXPECT_EQ(profile("Show").savedAt, clock.now());
    const std::string before = *profile("Show").text();
    save("Show");
    EXPECT_EQ(profile("Show").text(), before);
}

TEST_F(ProfileStoreTests, namesOfOneFileNameLiveBesideEachOther) {
    save("a/b");
    EXPECT_EQ(fileNames(), Names{"a-b.json"});
    EXPECT_EQ(names(), Names{"a/b"});
    save("a-b");
    EXPECT_EQ(fileNames(), (Names{"a-b 2.json", "a-b.json"}));
    EXPECT_EQ(SettingsProfile::read(folder / "a-b.json")->name, "a/b");
    EXPECT_EQ(SettingsProfile::read(folder / "a-b 2.json")->name, "a-b");
    save("a-b");
    save("a/b");
    EXPECT_EQ(fileNames().size(), 2U);
    save("..hidden");
    save("/");
    EXPECT_EQ(fileNames(), (Names{"-.json", "_..hidden.json", "a-b 2.json", "a-b.json"}));
}

TEST_F(ProfileStoreTests, aFileThatWasRenamedIsTheSameProfile) {
    save("Show");
    fs::rename(folder / "Show.json", folder / "Concert.json");
    profiles->reload();
    EXPECT_EQ(names(), Names{"Show"});
    EXPECT_EQ(profiles->activeProfileName(), "Show");
    save("Show");
    EXPECT_EQ(fileNames(), Names{"Concert.json"});
}

TEST_F(ProfileStoreTests, filesThatAreNoneAreInvisible) {
    save("Show");
    fs::copy(folder / "Show.json", folder / "Other.JSON");
    fs::copy(folder / "Show.json", folder / "Twin.json");
    ASSERT_EQ(mkfifo((folder / "pipe.json").c_str(), S_IRUSR | S_IWUSR), 0);
    fs::create_directory(folder / "folder.json");
    profiles->reload();
    EXPECT_EQ(names(), Names{"Show"});
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
    // The other one counts once the first has another name.
    temporary.write("Tarvane/Profiles/Show.json", textOf("Renamed"));
    profiles->reload();
    EXPECT_EQ(names(), (Names{"Renamed", "Show"}));
}

TEST_F(ProfileStoreTests, deletingTheActiveProfileClearsItsName) {
    save("First");
    save("Second");
    profiles->remove(profile("First"));
    EXPECT_EQ(names(), Names{"Second"});
    EXPECT_EQ(profiles->activeProfileName(), "Second");
    profiles->remove(profile("Second"));
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(fileNames().empty());
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    EXPECT_FALSE(store.contains("Tarvane.activeProfileName"));
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
}

TEST_F(ProfileStoreTests, importingNeverReplaces) {
    save("Show");
    engine->viewMode.set(SpectrumViewMode::line);
    import("show.json", textOf("Show"));
    EXPECT_EQ(panels.titles, Names{"Import Profiles"});
    EXPECT_EQ(names(), (Names{"Show", "Show (2)"}));
    import("show.json", textOf("Show"));
    EXPECT_EQ(names(), (Names{"Show", "Show (2)", "Show (3)"}));
    EXPECT_NE(profile("Show").settings, SettingsSnapshot{});
    EXPECT_EQ(profile("Show (2)").settings, SettingsSnapshot{});
    EXPECT_EQ(profiles->activeProfileName(), "Show");
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
    EXPECT_EQ(profiles->uniqueName("Show"), "Show (4)");
    EXPECT_EQ(profiles->uniqueName("New"), "New");
}

TEST_F(ProfileStoreTests, severalFilesMayHaveOneName) {
    panels.chosen = {temporary.write("1.json", textOf("Show")),
                     temporary.write("2.json", textOf("Show"))};
    profiles->importProfiles();
    EXPECT_EQ(names(), (Names{"Show", "Show (2)"}));
}

TEST_F(ProfileStoreTests, anImportKeepsTheFilesFormatAndName) {
    std::string text = textOf(" Show ");
    text.replace(text.find("\"format\": 1"), 11, "\"format\": 7");
    import("show.json", text);
    EXPECT_EQ(names(), Names{" Show "});
    EXPECT_EQ(profile(" Show ").format, 7);
    EXPECT_EQ(SettingsProfile::read(folder / " Show .json")->format, 7);
}

TEST_F(ProfileStoreTests, whatIsNoProfileIsNamedAndTheRestIsImported) {
    panels.chosen = {temporary.write("x.json", "{"), temporary.write("good.json", textOf("Good")),
                     temporary.write("y.txt", "hello")};
    profiles->importProfiles();
    EXPECT_EQ(names(), Names{"Good"});
    EXPECT_EQ(profiles->errorMessage(), "Not a valid Tarvane profile: x.json, y.txt");
    profiles->dismissError();
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);

    const auto huge = temporary.write("huge.json", textOf("Huge"));
    fs::resize_file(huge, 100'000'000);
    const auto pipe = temporary.path() / "pipe.json";
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    panels.chosen = {huge, pipe, temporary.path() / "missing.json",
                     temporary.write("nameless.json", textOf("  "))};
    profiles->importProfiles();
    EXPECT_EQ(names(), Names{"Good"});
    EXPECT_EQ(profiles->errorMessage(),
              "Not a valid Tarvane profile: huge.json, pipe.json, missing.json, nameless.json");
}

TEST_F(ProfileStoreTests, aCancelledPanelDoesNothing) {
    save("Show");
    profiles->exportProfile(profile("Show"));
    profiles->importProfiles();
    EXPECT_EQ(panels.titles, (Names{"Export Profile", "Import Profiles"}));
    EXPECT_EQ(names(), Names{"Show"});
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
}

TEST_F(ProfileStoreTests, anExportIsTheSameFile) {
    save("a/b");
    panels.chosen = {temporary.path() / "carried.json"};
    profiles->exportProfile(profile("a/b"));
    EXPECT_EQ(panels.proposed, "a-b.json");
    EXPECT_EQ(SettingsProfile::read(panels.chosen.front()), profile("a/b"));
    EXPECT_EQ(TarvaneKit::readTextFile(panels.chosen.front(), 1'000'000),
              TarvaneKit::readTextFile(folder / "a-b.json", 1'000'000));
    panels.chosen = {temporary.path() / "missing" / "carried.json"};
    profiles->exportProfile(profile("a/b"));
    EXPECT_EQ(profiles->errorMessage(), "Couldn't export \"a/b\": No such file or directory");
}

TEST_F(ProfileStoreTests, aPlaceThatCanNotBeWrittenIsTold) {
    temporary.write("Tarvane", "a file in the folder's place");
    save("Show");
    EXPECT_EQ(profiles->errorMessage(), "Couldn't save \"Show\": Not a directory");
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    import("good.json", textOf("Good"));
    profiles->dismissError();
    EXPECT_EQ(profiles->errorMessage(), "Couldn't save \"Good\": Not a directory");
    EXPECT_TRUE(names().empty());
}

// The superuser may write anywhere, so the test is somebody else for a moment.
TEST_F(ProfileStoreTests, aFolderThatMayOnlyBeReadLosesNothing) {
    save("Show");
    const auto before = profile("Show");
    const uid_t user = geteuid();
    fs::permissions(temporary.path(), fs::perms::all);
    fs::permissions(folder.parent_path(), fs::perms::all);
    fs::permissions(folder, fs::perms(0555));
    fs::permissions(folder / "Show.json", fs::perms(0666));
    if (user == 0) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    engine->viewMode.set(SpectrumViewMode::line);
    save("Show");
    EXPECT_EQ(profiles->errorMessage(), "Couldn't save \"Show\": Permission denied");
    profiles->dismissError();
    profiles->remove(before);
    EXPECT_EQ(profiles->errorMessage(), "Couldn't delete \"Show\": Permission denied");
    ASSERT_EQ(seteuid(user), 0);
    fs::permissions(folder, fs::perms::owner_all);
    profiles->reload();
    EXPECT_EQ(profiles->profiles(), std::vector{before});
    EXPECT_EQ(fileNames(), Names{"Show.json"});
}

TEST_F(ProfileStoreTests, aFullDiskLosesNothingOfTheOldFile) {
    save("Show");
    const auto before = profile("Show");
    std::optional<TarvaneTests::FullDisk> full(1024);
    engine->viewMode.set(SpectrumViewMode::line);
    save("Show");
    save("Other");
    panels.chosen = {temporary.path() / "carried.json"};
    profiles->exportProfile(before);
    full.reset();
    for (const char* message :
         {"Couldn't save \"Show\": File too large", "Couldn't save \"Other\": File too large",
          "Couldn't export \"Show\": File too large"}) {
        EXPECT_EQ(profiles->errorMessage(), message);
        profiles->dismissError();
    }
    EXPECT_EQ(profiles->activeProfileName(), "Show");
    profiles->reload();
    EXPECT_EQ(profiles->profiles(), std::vector{before});
    EXPECT_EQ(fileNames(), Names{"Show.json"});
    EXPECT_FALSE(fs::exists(panels.chosen.front()));
}

TEST_F(ProfileStoreTests, aSetupThatHasNoFormIsToldAndLosesNothing) {
    save("Show");
    const auto before = profile("Show");
    engine->targetCurveReferenceDB.set(HUGE_VAL);
    save("Show");
    EXPECT_EQ(profiles->errorMessage(),
              "Couldn't save \"Show\": the settings have no form in a file of at most 16 MB");
    EXPECT_EQ(profiles->profiles(), std::vector{before});
}

// What was listed is loaded; that it is gone shows in the list and in what is active.
TEST_F(ProfileStoreTests, aFileThatVanishesIsStillLoadedOnce) {
    engine->viewMode.set(SpectrumViewMode::line);
    save("Show");
    engine->viewMode.set(SpectrumViewMode::banded);
    fs::remove(folder / "Show.json");
    ASSERT_EQ(names(), Names{"Show"});
    profiles->load(profile("Show"), *engine);
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::line);
    waitUntil([&] { return names().empty(); });
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
}

TEST_F(ProfileStoreTests, deletingWhatIsGoneIsNoError) {
    save("Show");
    const auto gone = profile("Show");
    fs::remove(folder / "Show.json");
    profiles->remove(gone);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(profiles->errorMessage(), std::nullopt);
}

TEST_F(ProfileStoreTests, theListFollowsTheFolder) {
    // From a folder that isn't there yet, made in steps.
    fs::create_directories(folder);
    temporary.write("Tarvane/Profiles/Show.json", textOf("Show"));
    waitUntil([&] { return names() == Names{"Show"}; });
    // A file's content, written in its place.
    temporary.write("Tarvane/Profiles/Show.json", textOf("Concert"));
    waitUntil([&] { return names() == Names{"Concert"}; });
    // One that was no profile at first.
    temporary.write("Tarvane/Profiles/Late.json", "{");
    waitUntil([&] { return fileNames().size() == 2; });
    temporary.write("Tarvane/Profiles/Late.json", textOf("Late"));
    waitUntil([&] { return names() == (Names{"Concert", "Late"}); });
    // Exchanged for another file, twice.
    for (const char* name : {"Second", "Third"}) {
        fs::rename(temporary.write("new", textOf(name)), folder / "Late.json");
        waitUntil([&] { return names() == (Names{"Concert", name}); });
    }
    // The folder goes, and comes back with something else in it.
    fs::rename(folder, temporary.path() / "Aside");
    waitUntil([&] { return names().empty(); });
    fs::create_directory(folder);
    temporary.write("Tarvane/Profiles/New.json", textOf("New"));
    waitUntil([&] { return names() == Names{"New"}; });
    fs::rename(folder, temporary.path() / "Aside too");
    fs::rename(temporary.path() / "Aside", folder);
    waitUntil([&] { return names() == (Names{"Concert", "Third"}); });
    fs::remove_all(folder.parent_path());
    waitUntil([&] { return names().empty(); });
    save("Again");
    EXPECT_EQ(names(), Names{"Again"});
}

TEST_F(ProfileStoreTests, manyChangesAreOneNews) {
    save("Show");
    settle();
    int news = 0;
    QObject::connect(&profiles->profiles.notifier(), &ChangeNotifier::changed, profiles.get(),
                     [&] { ++news; });
    for (int i = 0; i < 100; ++i) {
        temporary.write("Tarvane/Profiles/" + std::to_string(i) + ".json",
                        textOf(std::to_string(i)));
    }
    waitUntil([&] { return names().size() == 101; });
    EXPECT_EQ(news, 1);
    profiles->reload();
    EXPECT_EQ(news, 1);
}

TEST_F(ProfileStoreTests, twoProgramsShareAFolder) {
    TarvaneTests::MemoryStore otherSettings;
    ProfileStore::Environment environment{
        .folder = folder, .store = otherSettings, .clock = clock, .panels = panels};
    ProfileStore other(environment);
    save("Show");
    // The other one hasn't heard of it yet, and replaces it all the same.
    engine->viewMode.set(SpectrumViewMode::banded);
    other.saveCurrent(*engine, "Show");
    EXPECT_EQ(fileNames(), Names{"Show.json"});
    waitUntil([&] { return profile("Show").settings.viewMode == SpectrumViewMode::banded; });
    // Nor does an import take its place.
    save("New");
    panels.chosen = {temporary.write("new.json", textOf("New"))};
    other.importProfiles();
    EXPECT_EQ(namesOf(other), (Names{"New", "New (2)", "Show"}));
    // What one deletes isn't active in the other any more.
    other.remove(profile("New"));
    waitUntil([&] { return names() == (Names{"New (2)", "Show"}); });
    EXPECT_EQ(profiles->activeProfileName(), std::nullopt);
    EXPECT_EQ(other.activeProfileName(), "Show");
}

// As another program holds it that hangs.
TEST_F(ProfileStoreTests, aStuckProgramHoldsTheLockInVain) {
    save("Show");
    const int lock = open((folder.string() + ".lock").c_str(), O_RDWR);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    save("Other");
    EXPECT_EQ(names(), (Names{"Other", "Show"}));
    close(lock);
}

}  // namespace ProfileStoreTests
}  // namespace TarvaneApp
