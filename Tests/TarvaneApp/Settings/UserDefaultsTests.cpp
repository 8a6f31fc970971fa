#include "Settings/UserDefaults.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Support/FullDisk.h"

namespace TarvaneApp {
namespace UserDefaultsTests {

constexpr std::chrono::milliseconds retryInterval{10};

class UserDefaultsTests : public testing::Test {
  protected:
    // Also of the writer's copies, which a killed one leaves behind.
    UserDefaultsTests() { qputenv("TMPDIR", QFile::encodeName(folder.path())); }
    ~UserDefaultsTests() override { qunsetenv("TMPDIR"); }

    static void waitUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    std::string couldNotSave(const std::string& reason) const {
        return "Tarvane couldn't save its settings to " + path.toStdString() + ": " + reason +
               ". They are kept while the program runs, and saving is tried again.";
    }

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

TEST_F(UserDefaultsTests, aFailedWriteIsToldOnceKeptAndTriedAgain) {
    UserDefaults defaults(path, retryInterval);
    EXPECT_FALSE(defaults.saveFailure()());
    ASSERT_TRUE(QDir().mkdir(path));
    int told = 0;
    int tries = 0;
    QObject::connect(&defaults.saveFailure().notifier(), &ChangeNotifier::changed,
                     [&] { told += defaults.saveFailure()() ? 1 : 0; });
    defaults.setText("first", "1");
    defaults.synchronize();
    waitUntil([&] { return defaults.saveFailure()().has_value(); });
    EXPECT_EQ(defaults.saveFailure()(), couldNotSave("it isn't a regular file"));
    defaults.setText("second", "2");
    defaults.setText("first", "newer");
    defaults.synchronize();
    waitUntil([&] { return ++tries > 5; });  // every wake-up is a try that was due or its news
    EXPECT_EQ(told, 1);
    EXPECT_EQ(defaults.text("first"), "newer");

    ASSERT_TRUE(QDir().rmdir(path));
    waitUntil([&] { return !defaults.saveFailure()(); });
    EXPECT_EQ(UserDefaults(path).text("first"), "newer");
    EXPECT_EQ(UserDefaults(path).text("second"), "2");

    // The next failure is told again.
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    defaults.setText("third", "3");
    defaults.synchronize();
    waitUntil([&] { return defaults.saveFailure()().has_value(); });
    EXPECT_EQ(told, 2);
    ASSERT_TRUE(QDir().rmdir(path));
}

TEST_F(UserDefaultsTests, aFullDiskCostsNothingThatWasStored) {
    {
        UserDefaults defaults(path);
        defaults.setText("kept", "yes");
    }
    UserDefaults defaults(path, retryInterval);
    std::optional<TarvaneTests::FullDisk> full(4096);
    const std::string large(20000, 'x');
    defaults.setText("large", large);
    defaults.synchronize();
    waitUntil([&] { return defaults.saveFailure()().has_value(); });
    full.reset();
    EXPECT_EQ(UserDefaults(path).text("kept"), "yes");
    waitUntil([&] { return !defaults.saveFailure()(); });
    EXPECT_EQ(UserDefaults(path).text("kept"), "yes");
    EXPECT_EQ(UserDefaults(path).text("large"), large);
}

TEST_F(UserDefaultsTests, aPlaceThatHoldsNoFileIsToldAtOnceAndTheDefaultsHold) {
    const QString file = folder.filePath("file");
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    path = file + "/settings.ini";
    EXPECT_EQ(UserDefaults(path).saveFailure()(), couldNotSave("Not a directory"));

    path = folder.filePath("fifo");
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR), 0);
    {
        UserDefaults defaults(path);  // a reader of a pipe waits for a writer
        EXPECT_EQ(defaults.saveFailure()(), couldNotSave("it isn't a regular file"));
        EXPECT_FALSE(defaults.text("key"));
        defaults.setText("key", "x");
        EXPECT_EQ(defaults.text("key"), "x");
    }
    path = folder.filePath("device");
    ASSERT_TRUE(QFile::link("/dev/zero", path));
    EXPECT_EQ(UserDefaults(path).saveFailure()(), couldNotSave("it isn't a regular file"));
}

// As a crash leaves it, or a machine that shares the home folder: QLockFile would wait for its
// holder until it is old enough, which this one never is.
TEST_F(UserDefaultsTests, aLockThatWasLeftBehindHoldsNothingUp) {
    QFile lock(path + ".lock");
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
    lock.write("1\ntarvane\nanother-host\n");
    lock.flush();
    ASSERT_TRUE(lock.setFileTime(QDateTime::currentDateTimeUtc().addYears(1),
                                 QFileDevice::FileModificationTime));
    lock.close();
    {
        UserDefaults defaults(path);
        defaults.setText("key", "x");
    }
    EXPECT_EQ(UserDefaults(path).text("key"), "x");
}

TEST_F(UserDefaultsTests, aStuckWriterHoldsTheLockInVain) {
    const int lock = open(QFile::encodeName(path + ".lock").constData(), O_RDWR | O_CREAT, 0600);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    {
        UserDefaults defaults(path);
        defaults.setText("key", "x");
    }
    EXPECT_EQ(UserDefaults(path).text("key"), "x");
    close(lock);
}

TEST_F(UserDefaultsTests, twoProgramsKeepEachOthersKeys) {
    {
        UserDefaults first(path);
        UserDefaults second(path);
        for (int i = 0; i < 50; ++i) {
            first.setNumber("first" + std::to_string(i), i);
            first.synchronize();
            second.setNumber("second" + std::to_string(i), i);
            second.synchronize();
        }
    }
    const UserDefaults defaults(path);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(defaults.number("first" + std::to_string(i)), i);
        EXPECT_EQ(defaults.number("second" + std::to_string(i)), i);
    }
}

TEST_F(UserDefaultsTests, theFileIsTheUsersOwnAndALinkToItStays) {
    {
        UserDefaults defaults(path);
        defaults.setText("key", "old");
    }
    const QString link = folder.filePath("link.ini");
    ASSERT_TRUE(QFile::link(path, link));
    {
        UserDefaults defaults(link);
        defaults.setText("key", "x");
    }
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(UserDefaults(path).text("key"), "x");
    EXPECT_EQ(QFile::permissions(path) & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
              QFileDevice::Permissions());
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
    // A slow machine's first writes take longer than the first crashes leave them.
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

}  // namespace UserDefaultsTests
}  // namespace TarvaneApp
