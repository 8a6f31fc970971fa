#include "Profiles/ProfileFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QLocale>

#include "Support/TemporaryFolder.h"

namespace TarvaneApp {
namespace ProfileFolderTests {

namespace fs = std::filesystem;

SettingsProfile named(const std::string& name) {
    SettingsProfile profile;
    profile.name = name;
    return profile;
}

class ProfileFolderTests : public testing::Test {
  protected:
    ~ProfileFolderTests() override { QLocale::setDefault(usual); }

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const SettingsProfile& profile : ProfileFolder::read(folder.files()).profiles) {
            names.push_back(profile.name);
        }
        return names;
    }
    void put(const std::string& fileName, const std::string& name) const {
        temporary.write(fileName, named(name).text().value());
    }
    std::string newFileName(const std::string& name) const {
        return folder.newFileURL(name).filename().string();
    }

    const QLocale usual;
    const TarvaneTests::TemporaryFolder temporary;
    const ProfileFolder folder{temporary.path()};
};

TEST_F(ProfileFolderTests, aNameBecomesAFileNameOfAnySystem) {
    EXPECT_EQ(newFileName("Show"), "Show.json");
    EXPECT_EQ(newFileName("a/b"), "a-b.json");
    EXPECT_EQ(newFileName("/"), "-.json");
    EXPECT_EQ(newFileName("1/2\\3:4?5%6*7|8\"9<10>11"), "1-2-3-4-5-6-7-8-9-10-11.json");
    EXPECT_EQ(newFileName("..hidden"), "_..hidden.json");
    EXPECT_EQ(newFileName("."), "_..json");
    EXPECT_EQ(newFileName(""), "Profile.json");
    EXPECT_EQ(newFileName("Größe 東京 🎤"), "Größe 東京 🎤.json");
    // Cc: U+0000 to U+001F and U+007F to U+009F. A soft hyphen (U+00AD, Cf) is none.
    EXPECT_EQ(newFileName("a\tb\nc\x7F"
                          "d\xC2\x80"
                          "e\xC2\x9F"
                          "f"),
              "a-b-c-d-e-f.json");
    EXPECT_EQ(newFileName(std::string("a\0b", 3)), "a-b.json");
    EXPECT_EQ(newFileName("a\xC2\xAD"
                          "b"),
              "a\xC2\xAD"
              "b.json");
}

TEST_F(ProfileFolderTests, aTakenNameIsNumbered) {
    put("Live.json", "Live");
    EXPECT_EQ(newFileName("Live"), "Live 2.json");
    put("Live 2.json", "another");
    EXPECT_EQ(newFileName("Live"), "Live 3.json");
    // Whatever it is that is there.
    fs::create_directory(temporary.path() / "Live 3.json");
    fs::create_symlink("nowhere", temporary.path() / "Live 4.json");
    EXPECT_EQ(newFileName("Live"), "Live 5.json");
}

// The file's name and what stands behind it while it is written both fit the 255 bytes of a name.
TEST_F(ProfileFolderTests, aLongNameIsCutAtACharacterAndCanBeWritten) {
    for (const std::string& character :
         {std::string("x"), std::string("ü"), std::string("東"), std::string("🎤")}) {
        std::string name = "a";
        while (name.size() < 255) {
            name += character;
        }
        const auto first = folder.newFileURL(name);
        EXPECT_LE(first.filename().string().size(), 255U);
        EXPECT_GT(first.filename().string().size(), 240U);
        EXPECT_EQ((first.filename().string().size() - 1 - 5) % character.size(), 0U);
        EXPECT_EQ(ProfileFolder::write(named(name), first), std::nullopt);
        EXPECT_EQ(ProfileFolder::write(named(name), first), std::nullopt);  // over itself
        const auto second = folder.newFileURL(name);
        EXPECT_TRUE(second.filename().string().ends_with(" 2.json"));
        EXPECT_EQ(ProfileFolder::write(named(name + " too"), second), std::nullopt);
        const auto content = ProfileFolder::read(folder.files());
        EXPECT_EQ(content.fileURLs.at(name), first);
        EXPECT_EQ(content.fileURLs.at(name + " too"), second);
    }
    EXPECT_EQ(ProfileFolder::fileName(std::string(5'000'000, 'x')).size(), 248U);
}

TEST_F(ProfileFolderTests, numbersCountByTheirValueInEveryLocale) {
    put("1.json", "Profile 10");
    put("2.json", "Profile 2");
    put("3.json", "profile 1");
    put("4.json", "Äpfel");
    put("5.json", "Zelt");
    const std::vector<std::string> expected{"Äpfel", "profile 1", "Profile 2", "Profile 10",
                                            "Zelt"};
    for (const QLocale& locale : {QLocale::c(), QLocale(QLocale::English), QLocale(QLocale::German),
                                  QLocale(QLocale::Japanese)}) {
        QLocale::setDefault(locale);
        EXPECT_EQ(names(), expected) << locale.name().toStdString();
    }
}

TEST_F(ProfileFolderTests, whatNoProfileIsIsPassedOver) {
    put("good.json", "Good");
    put("capitals.JSON", "Capitals");
    put("other.txt", "Other");
    put("none", "None");
    put("empty.json", "");
    put("blank.json", " \t\n ");
    temporary.write("broken.json", "{");
    temporary.write("array.json", "[]");
    fs::create_directory(temporary.path() / "folder.json");
    ASSERT_EQ(mkfifo((temporary.path() / "pipe.json").c_str(), S_IRUSR | S_IWUSR), 0);
    fs::create_symlink("loop.json", temporary.path() / "loop.json");
    fs::create_symlink("nowhere", temporary.path() / "dangling.json");
    EXPECT_EQ(names(), std::vector<std::string>{"Good"});

    fs::create_symlink("other.txt", temporary.path() / "linked.json");
    EXPECT_EQ(names(), (std::vector<std::string>{"Good", "Other"}));
}

TEST_F(ProfileFolderTests, ofTwoFilesWithOneNameTheFirstCounts) {
    put("b.json", "Show");
    put("a.json", "Show");
    put("c.json", "Show ");  // a name of its own
    const auto content = ProfileFolder::read(folder.files());
    EXPECT_EQ(content.profiles.size(), 2U);
    EXPECT_EQ(content.fileURLs.at("Show"), temporary.path() / "a.json");
    EXPECT_EQ(content.fileURLs.at("Show "), temporary.path() / "c.json");
}

TEST_F(ProfileFolderTests, aFolderThatIsNoneIsEmpty) {
    EXPECT_TRUE(ProfileFolder(temporary.path() / "missing").files().empty());
    EXPECT_TRUE(ProfileFolder(temporary.write("file", "")).files().empty());
    EXPECT_EQ(ProfileFolder(temporary.path() / "file").create(), "Not a directory");
    const ProfileFolder deep(temporary.path() / "a" / "b");
    EXPECT_EQ(deep.create(), std::nullopt);
    EXPECT_TRUE(fs::is_directory(deep.path()));
}

}  // namespace ProfileFolderTests
}  // namespace TarvaneApp
