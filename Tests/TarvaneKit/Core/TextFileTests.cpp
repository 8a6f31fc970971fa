#include "Core/TextFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Support/TemporaryFolder.h"

namespace TarvaneKit {
namespace TextFileTests {

using TarvaneTests::TemporaryFolder;

TextFileError errorOf(const std::filesystem::path& path, std::size_t maxBytes = 1000) {
    try {
        readTextFile(path, maxBytes);
    } catch (const TextFileError& error) {
        return error;
    }
    throw std::runtime_error("the file was read");
}

TEST(UTF8Text, takesEveryLengthOfCharacter) {
    // One to four bytes, and the borders of each length (RFC 3629, 3).
    for (const char* text :
         {"", "a", "\x7F", "\xC2\x80", "é", "\xDF\xBF", "\xE0\xA0\x80", "−", "\xED\x9F\xBF",
          "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "𝄞", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(utf8Text(text), text);
    }
    const std::string withZero("a\0b", 3);
    EXPECT_EQ(utf8Text(withZero), withZero);
}

TEST(UTF8Text, turnsDownWhatIsNotUTF8) {
    const std::vector<std::string> texts{
        "\x80",      // a continuation without a lead
        "a\xE9",     // Latin-1
        "\xC0\x80",  // overlong forms
        "\xC1\xBF",
        "\xE0\x9F\xBF",
        "\xF0\x8F\xBF\xBF",
        "\xED\xA0\x80",      // a surrogate
        "\xF4\x90\x80\x80",  // above U+10FFFF
        "\xF5\x80\x80\x80",
        "\xFF\xFE"
        "2\x00",  // UTF-16
        "\xC3",   // cut short
        "\xE2\x88",
        "\xF0\x9D\x84",
        "\xE2(\x92",  // a continuation that is none
    };
    for (const std::string& text : texts) {
        EXPECT_FALSE(utf8Text(text)) << testing::PrintToString(text);
        EXPECT_FALSE(utf8Text("good " + text + " good"));
    }
}

TEST(UTF8Text, dropsOneByteOrderMarkAtTheHeadAlone) {
    EXPECT_EQ(utf8Text("\xEF\xBB\xBF"
                       "20 1"),
              "20 1");
    EXPECT_EQ(utf8Text("\xEF\xBB\xBF\xEF\xBB\xBF"), "\xEF\xBB\xBF");
    EXPECT_EQ(utf8Text("a\xEF\xBB\xBF"), "a\xEF\xBB\xBF");
}

TEST(TextFile, isReadWhole) {
    const TemporaryFolder folder;
    const std::string text(200'000, 'x');
    EXPECT_EQ(readTextFile(folder.write("a.txt", text), 200'000), text);
    EXPECT_EQ(readTextFile(folder.write("b.txt", ""), 10), "");
    EXPECT_EQ(readTextFile(folder.write("c.txt", "\xEF\xBB\xBFé"), 10), "é");
}

TEST(TextFile, aMissingOneSaysSo) {
    const TemporaryFolder folder;
    const auto error = errorOf(folder.path() / "none.txt");
    EXPECT_EQ(error.kind(), TextFileError::Kind::unreadable);
    EXPECT_STREQ(error.what(), "The file “none.txt” couldn't be read: No such file or directory.");
}

TEST(TextFile, aFolderOrDeviceOrPipeIsTurnedDownWithoutAWait) {
    const TemporaryFolder folder;
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& path : {folder.path(), std::filesystem::path("/dev/zero"), pipe}) {
        const auto error = errorOf(path);
        EXPECT_EQ(error.kind(), TextFileError::Kind::unreadable);
        EXPECT_EQ(error.what(), "The file “" + path.filename().string() +
                                    "” couldn't be read: it isn't a regular file.");
    }
}

TEST(TextFile, aFileOfTheSystemThatClaimsNoLengthIsReadToItsEnd) {
    EXPECT_FALSE(readTextFile("/proc/self/status", 1'000'000).empty());
}

TEST(TextFile, aLargeOneIsTurnedDownOneByteAboveTheLimit) {
    const TemporaryFolder folder;
    const auto path = folder.write("big.txt", std::string(2'000'001, '1'));
    const auto error = errorOf(path, 2'000'000);
    EXPECT_EQ(error.kind(), TextFileError::Kind::tooLarge);
    EXPECT_STREQ(error.what(),
                 "The file “big.txt” is too large: text files of up to 2 MB can be read.");
    EXPECT_EQ(readTextFile(path, 2'000'001).size(), 2'000'001U);
}

TEST(TextFile, anotherEncodingSaysSo) {
    const TemporaryFolder folder;
    const auto error = errorOf(folder.write("latin.txt",
                                            "Gr\xF6\xDF"
                                            "e 20 1"));
    EXPECT_EQ(error.kind(), TextFileError::Kind::notUTF8);
    EXPECT_STREQ(error.what(),
                 "The file “latin.txt” couldn't be read because it isn't UTF-8 text.");
}

}  // namespace TextFileTests
}  // namespace TarvaneKit
