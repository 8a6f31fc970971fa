#include "Settings/UserDefaults.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

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
    {
        UserDefaults defaults(path);
        defaults.setText("key", "x");
        defaults.setText("other", "y");
        defaults.synchronize();
    }
    {
        UserDefaults defaults(path);
        defaults.remove("key");
        EXPECT_FALSE(defaults.text("key"));
        defaults.synchronize();
    }
    EXPECT_FALSE(UserDefaults(path).text("key"));
    EXPECT_EQ(UserDefaults(path).text("other"), "y");
}

TEST_F(UserDefaultsTests, whatIsSetReadsBackAtOnce) {
    UserDefaults defaults(path);
    defaults.setNumber("number", 1.5);
    EXPECT_EQ(defaults.number("number"), 1.5);
    EXPECT_FALSE(defaults.data("number"));
    defaults.setData("number", "{}");
    EXPECT_EQ(defaults.data("number"), "{}");
    EXPECT_FALSE(defaults.number("number"));
}

TEST_F(UserDefaultsTests, aThousandMovesOfASliderEndAtTheLast) {
    {
        UserDefaults defaults(path);
        for (int i = 0; i <= 1000; ++i) {
            defaults.setNumber("slider", i);
            defaults.synchronize();
        }
    }
    EXPECT_EQ(UserDefaults(path).number("slider"), 1000.0);
}

TEST_F(UserDefaultsTests, aBrokenFileReadsAsEmptyAndCanBeWritten) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x00\xff[[[garbage\n=\n@ByteArray(", 26);
    file.close();
    {
        UserDefaults defaults(path);
        EXPECT_FALSE(defaults.text("key"));
        defaults.setText("key", "x");
    }
    EXPECT_EQ(UserDefaults(path).text("key"), "x");
}

TEST_F(UserDefaultsTests, aBrokenLineCostsThatLineAlone) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "[General]\nTarvane.first=one\n\xff\xfe{{{ no line\n"
        "Tarvane.broken=@Variant(\\0\\0\nTarvane.second=@ByteArray(true)\n");
    file.close();
    const UserDefaults defaults(path);
    EXPECT_EQ(defaults.text("Tarvane.first"), "one");
    EXPECT_EQ(defaults.data("Tarvane.second"), "true");
    EXPECT_FALSE(defaults.data("Tarvane.broken"));
}

// The writer is killed at some moment of its work, as often as it takes to hit many of them. It
// always sets two keys to one number, one flush for both.
TEST_F(UserDefaultsTests, aCrashAtAnyMomentLeavesAReadableStore) {
    {
        UserDefaults defaults(path);
        defaults.setText("kept", "yes");
    }
    const std::string filler(20000, 'x');
    std::mt19937 random(1);
    double last = 0.0;
    // A slow machine's first writes take longer than the first crashes leave them; and a crash
    // while the file's lock is being made leaves an empty one, which QLockFile takes for held for
    // 30 s.
    for (int crash = 0; crash < 25 || (last == 0.0 && crash < 1000); ++crash) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            UserDefaults defaults(path);
            for (double i = last + 1.0;; ++i) {
                defaults.setNumber("a", i);
                defaults.setText("filler", filler + std::to_string(i));
                defaults.setNumber("b", i);
                defaults.synchronize();
                // Else the lock is hardly ever free for the writer.
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            }
        }
        const unsigned longestLife = 800U * static_cast<unsigned>(25 + crash);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % longestLife));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);

        UserDefaults defaults(path);
        ASSERT_EQ(defaults.text("kept"), "yes");
        const auto a = defaults.number("a");
        ASSERT_EQ(a, defaults.number("b"));
        ASSERT_GE(a.value_or(0.0), last);
        last = a.value_or(0.0);
    }
    EXPECT_GT(last, 0.0);
}

}  // namespace
}  // namespace TarvaneApp
