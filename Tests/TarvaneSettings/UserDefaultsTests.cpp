#include "UserDefaults.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace TarvaneApp {
namespace {

class UserDefaultsTests : public testing::Test {
  protected:
    QTemporaryDir folder;
    QString path = folder.filePath("settings.ini");
};

TEST_F(UserDefaultsTests, everyFormSurvivesARestart) {
    {
        UserDefaults defaults(path);
        defaults.setText("Tarvane.text", "Mic, \"left\" = ümlaut @ 1;2");
        defaults.setText("Tarvane.digits", "12");
        defaults.setNumber("Tarvane.number", 0.1 + 0.2);
        defaults.setNumber("Tarvane.zero", 0.0);
        defaults.setData("Tarvane.data", std::string("{\"a\":\"\xC3\xBC\\n\"}"));
        defaults.synchronize();
    }
    const UserDefaults defaults(path);
    EXPECT_EQ(defaults.text("Tarvane.text"), "Mic, \"left\" = ümlaut @ 1;2");
    EXPECT_EQ(defaults.text("Tarvane.digits"), "12");
    EXPECT_EQ(defaults.number("Tarvane.number"), 0.1 + 0.2);
    EXPECT_EQ(defaults.number("Tarvane.zero"), 0.0);
    EXPECT_EQ(defaults.data("Tarvane.data"), "{\"a\":\"\xC3\xBC\\n\"}");
}

TEST_F(UserDefaultsTests, formsAreKeptApart) {
    UserDefaults defaults(path);
    defaults.setText("text", "true");
    defaults.setData("data", "true");
    EXPECT_FALSE(defaults.data("text"));
    EXPECT_FALSE(defaults.text("data"));
    EXPECT_FALSE(defaults.number("text"));
    EXPECT_FALSE(defaults.number("data"));
    EXPECT_FALSE(defaults.text("absent"));
}

TEST_F(UserDefaultsTests, removedIsAbsent) {
    UserDefaults defaults(path);
    defaults.setText("key", "x");
    defaults.remove("key");
    defaults.synchronize();
    EXPECT_FALSE(UserDefaults(path).text("key"));
}

TEST_F(UserDefaultsTests, aBrokenFileReadsAsEmptyAndCanBeWritten) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x00\xff[[[garbage\n=\n@ByteArray(", 26);
    file.close();
    UserDefaults defaults(path);
    EXPECT_FALSE(defaults.text("key"));
    defaults.setText("key", "x");
    defaults.synchronize();
    EXPECT_EQ(UserDefaults(path).text("key"), "x");
}

}  // namespace
}  // namespace TarvaneApp
