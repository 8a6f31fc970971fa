#include "Calibration/MicCalFile.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

#include "Calibration/CalibrationProfile.h"
#include "Core/TextFile.h"
#include "Support/TemporaryFolder.h"

namespace TarvaneKit {
namespace MicCalFileTests {

using TarvaneTests::TemporaryFolder;
using Points = std::vector<MicCalibrationPoint>;

void expectNoPoints(const std::string& contents) {
    try {
        MicCalFile::parse(contents);
        ADD_FAILURE() << '"' << contents << "\" was taken";
    } catch (const MicCalFile::ParseError& error) {
        EXPECT_EQ(error.kind(), MicCalFile::ParseError::Kind::noValidDataPoints);
        EXPECT_STREQ(error.what(),
                     "The calibration file contained no valid frequency/magnitude data points.");
    }
}

std::optional<double> sensFactorOf(const std::string& header) {
    return MicCalFile::parse(header + "\n1000 0\n").sensFactorDB;
}
std::optional<std::string> serialNumberOf(const std::string& header) {
    return MicCalFile::parse(header + "\n1000 0\n").serialNumber;
}

TEST(MicCalFile, withoutAnyRowIsAnError) {
    expectNoPoints("");
    expectNoPoints("\n\r\n \t \n");
    expectNoPoints("# comment\n* another\n\"quoted\"\n");
    expectNoPoints("frequency magnitude\n20\n30 x\n");
    expectNoPoints(std::string(1000, '\0'));
}

TEST(MicCalFile, aSensFactorWithoutRowsIsAnErrorToo) {
    expectNoPoints("\"Sens Factor =-1.5dB, SERNO: 7000123\"\n");
}

TEST(MicCalFile, rowsAreSortedByFrequency) {
    EXPECT_EQ(MicCalFile::parse("20 -1.0\n10 -2.0").points, (Points{{10.0, -2.0}, {20.0, -1.0}}));
}

TEST(MicCalFile, furtherColumnsAreIgnored) {
    EXPECT_EQ(MicCalFile::parse("1000 0.0 12.5").points, (Points{{1000.0, 0.0}}));
    EXPECT_EQ(MicCalFile::parse("1000 0.5 phase in degrees").points, (Points{{1000.0, 0.5}}));
}

TEST(MicCalFile, anyRunOfTabsAndSpacesSeparates) {
    for (const char* row : {"20 -1", "20\t-1", "20 \t  -1", "  20\t\t-1 \t", "\t20 -1"}) {
        EXPECT_EQ(MicCalFile::parse(row).points, (Points{{20.0, -1.0}})) << row;
    }
}

TEST(MicCalFile, aCommaIsNoSeparator) {
    expectNoPoints("20.0, -1.5");
    expectNoPoints("20.0,-1.5");
    expectNoPoints("20.0;-1.5");
    expectNoPoints("20,0 -1,5");
    EXPECT_EQ(MicCalFile::parse("20.0, -1.5\n30 1").points, (Points{{30.0, 1.0}}));
}

TEST(MicCalFile, everyLineEndCounts) {
    for (const char* end :
         {"\n", "\r\n", "\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9", "\n\n\r\n"}) {
        const std::string text = std::string("#SERNO: 5") + end + "20 1" + end + "30 2" + end;
        const auto file = MicCalFile::parse(text);
        EXPECT_EQ(file.points, (Points{{20.0, 1.0}, {30.0, 2.0}}));
        EXPECT_EQ(file.serialNumber, "5");
    }
}

TEST(MicCalFile, numbersAreDecimal) {
    EXPECT_EQ(MicCalFile::parse("+5 .5\n6. -1e-1\n7E0 +.25").points,
              (Points{{5.0, 0.5}, {6.0, -0.1}, {7.0, 0.25}}));
    expectNoPoints("0x10 1");
    expectNoPoints("20 inf");
    expectNoPoints("nan 1");
    expectNoPoints("20Hz 1");
    expectNoPoints("20 1dB");
    expectNoPoints("20 1e999");
}

TEST(MicCalFile, anyFiniteNumberIsTaken) {
    EXPECT_EQ(MicCalFile::parse("0 3\n-20 99").points, (Points{{-20.0, 99.0}, {0.0, 3.0}}));
}

TEST(MicCalFile, onePointHoldsEverywhere) {
    const auto file = MicCalFile::parse("1000 -2.5");
    for (const double frequencyHz : {0.0, 20.0, 1000.0, 24000.0}) {
        EXPECT_EQ(file.magnitudeCorrectionDB(frequencyHz), -2.5);
    }
}

TEST(MicCalFile, rowsOfOneFrequencyKeepTheirOrder) {
    const auto file = MicCalFile::parse("100 2\n100 1\n");
    EXPECT_EQ(file.points, (Points{{100.0, 2.0}, {100.0, 1.0}}));
    EXPECT_EQ(file.magnitudeCorrectionDB(99.0), 2.0);
    EXPECT_EQ(file.magnitudeCorrectionDB(101.0), 1.0);
}

TEST(MicCalFile, aboveAStepTheSecondOfItsRowsCounts) {
    const auto file = MicCalFile::parse("100 1\n100 2\n200 4\n");
    EXPECT_EQ(file.magnitudeCorrectionDB(150.0), 3.0);
}

TEST(MicCalFile, blanksAheadOfTheMarkStillMakeAHeader) {
    EXPECT_EQ(sensFactorOf("  \t# Sens Factor =-2dB"), -2.0);
}

TEST(MicCalFile, theFirstSensFactorWins) {
    EXPECT_EQ(sensFactorOf("#Sens Factor =-2dB\n#Sens Factor =-3dB"), -2.0);
}

TEST(MicCalFile, aSensFactorThatIsNoNumberLetsTheSearchGoOn) {
    EXPECT_EQ(sensFactorOf("#Sens Factor =dB\n#Sens Factor =-3dB"), -3.0);
    EXPECT_EQ(sensFactorOf("#Sens Factor =1.2.3\n#Sens Factor =-3dB"), -3.0);
    EXPECT_FALSE(sensFactorOf("#Sens Factor = -1.5dB"));
    EXPECT_FALSE(sensFactorOf("#Sens Factor=-1.5dB"));
    EXPECT_FALSE(sensFactorOf("#sens factor =-1.5dB"));
    // Only the first occurrence in a line is looked at.
    EXPECT_FALSE(sensFactorOf("#Sens Factor = x Sens Factor =-1"));
}

TEST(MicCalFile, theSensFactorIsPlainDigits) {
    EXPECT_EQ(sensFactorOf("\"Sens Factor =-1.5dB, SERNO: 7000123\""), -1.5);
    EXPECT_EQ(sensFactorOf("*Sens Factor =+.5"), 0.5);
    EXPECT_EQ(sensFactorOf("*Sens Factor =12e3"), 12.0);  // an exponent isn't read
}

TEST(MicCalFile, aSensFactorOnAnUnmarkedLineIsNone) {
    EXPECT_FALSE(sensFactorOf("Sens Factor =-1.5dB, SERNO: 1"));
    EXPECT_FALSE(serialNumberOf("Sens Factor =-1.5dB, SERNO: 1"));
}

TEST(MicCalFile, theLastSerialNumberWinsAndAnEmptyOneClearsIt) {
    EXPECT_EQ(serialNumberOf("*SERNO: 123\n*SERNO: 456"), "456");
    EXPECT_FALSE(serialNumberOf("*SERNO: 123\n*SERNO: \"\""));
    EXPECT_FALSE(serialNumberOf("*SERNO: , \t\""));
}

TEST(MicCalFile, aSerialNumberIsAllBehindItsLabelWithoutQuotesAndCommas) {
    EXPECT_EQ(serialNumberOf("\"Sens Factor =-1.5dB, SERNO: 7000123\""), "7000123");
    EXPECT_EQ(serialNumberOf("# SERNO:\t\"AB-12 é\" ,"), "AB-12 é");
    EXPECT_EQ(serialNumberOf("# SERNO: 1 SERNO: 2"), "1 SERNO: 2");
    EXPECT_FALSE(serialNumberOf("# serno: 1"));
}

TEST(MicCalFile, theSerialNumberIsReadWithoutASensFactorAndBehindIt) {
    const auto file = MicCalFile::parse("*SERNO: 9\n*Sens Factor =-1\n20 1\n*SERNO: 10\n");
    EXPECT_EQ(file.serialNumber, "10");
    EXPECT_EQ(file.sensFactorDB, -1.0);
}

// The forms in which makers and measurement programs write such files.

TEST(MicCalFileForms, quotedHeaderAndTabs) {
    const auto file = MicCalFile::parse(
        "\"Sens Factor =-.723dB, AGain =18dB, SERNO: 7041234\"\r\n"
        "10.054\t-5.2893\r\n10.179\t-5.1768\r\n19998.3\t1.0451\r\n");
    EXPECT_EQ(file.sensFactorDB, -0.723);
    EXPECT_EQ(file.serialNumber, "7041234");
    EXPECT_EQ(file.points, (Points{{10.054, -5.2893}, {10.179, -5.1768}, {19998.3, 1.0451}}));
}

TEST(MicCalFileForms, asteriskHeaderWithTheSensitivityAsARow) {
    const auto file = MicCalFile::parse("*1000Hz\t-38.7\r\n20.00\t-0.9\r\n1000.00\t0.0\r\n");
    EXPECT_FALSE(file.sensFactorDB);
    EXPECT_EQ(file.points, (Points{{20.0, -0.9}, {1000.0, 0.0}}));
}

TEST(MicCalFileForms, asteriskCommentsAndThreeColumns) {
    const auto file = MicCalFile::parse(
        "* Microphone response, exported\n* Freq(Hz) SPL(dB) Phase(degrees)\n*\n"
        "   20.0   -1.10   12.6\n   25.0   -0.80   10.1\n");
    EXPECT_EQ(file.points, (Points{{20.0, -1.1}, {25.0, -0.8}}));
}

TEST(MicCalFileForms, numberSignCommentsAndUnmarkedTitles) {
    const auto file =
        MicCalFile::parse("# made 2026-03-01\nFrequency\tMagnitude\nHz\tdB\n2.0e1\t1.5\n\n; end\n");
    EXPECT_EQ(file.points, (Points{{20.0, 1.5}}));
}

TEST(MicCalFileForms, noHeaderAtAllAndNoLineEndAtTheEnd) {
    EXPECT_EQ(MicCalFile::parse("20 1\r\n40 2").points, (Points{{20.0, 1.0}, {40.0, 2.0}}));
}

// Reading a file.

TEST(MicCalFileReading, dropsAByteOrderMark) {
    const TemporaryFolder folder;
    const auto file =
        MicCalFile::read(folder.write("mic.txt", "\xEF\xBB\xBF\"SERNO: 5\"\r\n20 1\r\n"));
    EXPECT_EQ(file.serialNumber, "5");
    EXPECT_EQ(MicCalFile::read(folder.write("mic.txt",
                                            "\xEF\xBB\xBF"
                                            "20 1"))
                  .points.size(),
              1U);
}

TEST(MicCalFileReading, aProfileTakesAFileAndKeepsItsOwnOnAnyError) {
    const TemporaryFolder folder;
    CalibrationProfile profile;
    EXPECT_EQ(profile.micCorrectionDB(1000.0), 0.0);
    profile.loadMicCalFile(folder.write("good.txt", "#Sens Factor =-2\n20 1\n40 3\n"));
    ASSERT_TRUE(profile.micCalFile);
    EXPECT_EQ(profile.micCalFile->sensFactorDB, -2.0);
    EXPECT_EQ(profile.micCorrectionDB(30.0), 2.0);

    const auto before = profile;
    EXPECT_THROW(profile.loadMicCalFile(folder.path() / "none.txt"), TextFileError);
    EXPECT_THROW(profile.loadMicCalFile(folder.write("latin.txt",
                                                     "Gr\xF6\xDF"
                                                     "e\n20 1\n")),
                 TextFileError);
    EXPECT_THROW(profile.loadMicCalFile(
                     folder.write("huge.txt", std::string(MicCalFile::maxFileBytes + 1, '\n'))),
                 TextFileError);
    EXPECT_THROW(
        profile.loadMicCalFile(folder.write("sound.wav", std::string("RIFF\0\0\0\0WAVEfmt ", 16))),
        MicCalFile::ParseError);
    EXPECT_EQ(profile, before);
}

TEST(MicCalFileReading, theLongestFileAllowedIsReadInFull) {
    const TemporaryFolder folder;
    std::string text;
    int rows = 0;
    while (text.size() + 20 < MicCalFile::maxFileBytes) {
        text += fmt::format("{} 1.5\n", rows++);
    }
    EXPECT_EQ(MicCalFile::read(folder.write("long.txt", text)).points.size(),
              static_cast<std::size_t>(rows));
}

TEST(MicCalFileCoding, withoutSensFactorAndSerialNumberThereIsOneKey) {
    EXPECT_EQ(encode(MicCalFile::parse("20 1")),
              R"({"points":[{"frequencyHz":20.0,"magnitudeDB":1.0}]})");
}

TEST(MicCalFileCoding, aDecodedRecordStaysInItsOrder) {
    const auto file = decode<MicCalFile>(
        R"({"points":[{"frequencyHz":30,"magnitudeDB":1},{"frequencyHz":20,"magnitudeDB":2}]})");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->points[0].frequencyHz, 30.0);
}

TEST(MicCalFile, withoutPointsThereIsNoCorrection) {
    EXPECT_EQ(MicCalFile{}.magnitudeCorrectionDB(1000.0), 0.0);
}

rc::Gen<Points> curves() {
    return rc::gen::nonEmpty(rc::gen::container<Points>(
        rc::gen::map(rc::gen::pair(rc::gen::inRange(0, 2000), rc::gen::inRange(-400, 400)),
                     [](const std::pair<int, int>& row) {
                         return MicCalibrationPoint{row.first * 0.5, row.second * 0.25};
                     })));
}

RC_GTEST_PROP(MicCalFileLaws, writtenRowsComeBackSortedAndStable, ()) {
    auto points = *curves();
    std::string text;
    for (const auto& point : points) {
        text += fmt::format("{}\t{}\r\n", point.frequencyHz, point.magnitudeDB);
    }
    std::ranges::stable_sort(points, {}, &MicCalibrationPoint::frequencyHz);
    RC_ASSERT(MicCalFile::parse(text).points == points);
}

// The correction against a walk over the points from the left, instead of the search.
RC_GTEST_PROP(MicCalFileLaws, theCorrectionIsThePolygonThroughThePoints, ()) {
    MicCalFile file{.sensFactorDB = {}, .serialNumber = {}, .points = *curves()};
    std::ranges::stable_sort(file.points, {}, &MicCalibrationPoint::frequencyHz);
    const double frequencyHz = *rc::gen::inRange(-100, 4200) * 0.25;
    double expected = file.points.front().magnitudeDB;
    if (frequencyHz > file.points.front().frequencyHz) {
        for (std::size_t i = 0; i < file.points.size(); ++i) {
            if (file.points[i].frequencyHz <= frequencyHz) {
                expected = file.points[i].magnitudeDB;
                if (i + 1 < file.points.size() && file.points[i + 1].frequencyHz > frequencyHz) {
                    const double share =
                        (frequencyHz - file.points[i].frequencyHz) /
                        (file.points[i + 1].frequencyHz - file.points[i].frequencyHz);
                    expected = std::lerp(expected, file.points[i + 1].magnitudeDB, share);
                }
            }
        }
    }
    RC_ASSERT(std::abs(file.magnitudeCorrectionDB(frequencyHz) - expected) < 1e-9);
}

RC_GTEST_PROP(MicCalFileLaws, anyTextIsParsedOrTurnedDown, (const std::string& text)) {
    try {
        const auto file = MicCalFile::parse(text);
        RC_ASSERT(!file.points.empty());
    } catch (const MicCalFile::ParseError&) {
        RC_SUCCEED("turned down");
    }
}

}  // namespace MicCalFileTests
}  // namespace TarvaneKit
