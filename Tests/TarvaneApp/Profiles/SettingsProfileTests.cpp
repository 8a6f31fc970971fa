#include "Profiles/SettingsProfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "Support/RecordGenerators.h"
#include "Support/TemporaryFolder.h"

namespace TarvaneApp {
namespace SettingsProfileTests {
using TarvaneKit::dateFromISO8601;

std::string textOf(const std::string& settings, const std::string& format = "1",
                   const std::string& savedAt = "2026-03-01T19:30:00Z") {
    return R"({"format":)" + format + R"(,"name":"Show","savedAt":")" + savedAt +
           R"(","settings":)" + settings + "}";
}

TEST(SettingsProfile, isWrittenForPeopleAndForComparison) {
    SettingsProfile profile;
    profile.name = "Große Halle \"B\"";
    profile.savedAt = *dateFromISO8601("2026-03-01T19:30:00Z");
    profile.settings.viewMode = SpectrumViewMode::line;
    profile.settings.audioInput = {.deviceUID = "mic", .channelIndex = 2};
    profile.settings.targetCurveReferenceDB = 85.0;
    EXPECT_EQ(profile.text(), R"({
  "format": 1,
  "name": "Große Halle \"B\"",
  "savedAt": "2026-03-01T19:30:00Z",
  "settings": {
    "audioInput": {
      "channelIndex": 2,
      "deviceUID": "mic"
    },
    "targetCurveReferenceDB": 85.0,
    "viewMode": "Line"
  }
}
)");
}

TEST(SettingsProfile, staysTheSameByteForByteUnderSaving) {
    EXPECT_TRUE(TarvaneKit::Testing::holdsAlways([] {
        const auto profile = TarvaneKit::Testing::drawnValue<SettingsProfile>();
        const auto text = profile.text();
        RC_ASSERT(text.has_value());
        const auto back = SettingsProfile::fromText(*text);
        RC_ASSERT(back == profile);
        RC_ASSERT(back->text() == text);
    }));
}

TEST(SettingsProfile, aTrimmedFileSaysNothingElse) {
    const auto profile = SettingsProfile::fromText(textOf("{}"));
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->name, "Show");
    EXPECT_EQ(profile->savedAt, *dateFromISO8601("2026-03-01T19:30:00Z"));
    EXPECT_EQ(profile->settings, SettingsSnapshot{});
}

TEST(SettingsProfile, anyFormatLoadsAndIsKept) {
    for (const std::int64_t format : {2LL, 0LL, -1LL, 10'000'000'000LL}) {
        const auto profile = SettingsProfile::fromText(textOf("{}", std::to_string(format)));
        ASSERT_TRUE(profile) << format;
        EXPECT_EQ(profile->format, format);
        EXPECT_EQ(SettingsProfile::fromText(profile->text().value()), profile);
    }
    EXPECT_TRUE(SettingsProfile::fromText(textOf("{}", "6.0")));
    for (const char* other : {"1.5", "\"1\"", "true", "null", "1e300"}) {
        EXPECT_FALSE(SettingsProfile::fromText(textOf("{}", other))) << other;
    }
}

TEST(SettingsProfile, aDateHasOneFormHereAndInside) {
    const auto zoned = SettingsProfile::fromText(textOf("{}", "1", "2026-03-01T20:30:00+01:00"));
    ASSERT_TRUE(zoned);
    EXPECT_EQ(zoned->savedAt, *dateFromISO8601("2026-03-01T19:30:00Z"));
    for (const char* other : {"2026-03-01", "2026-03-01T19:30:00", "2026-03-01T19:30:00.5Z", ""}) {
        EXPECT_FALSE(SettingsProfile::fromText(textOf("{}", "1", other))) << other;
    }
    const auto calibratedAt = [](const std::string& date) {
        return SettingsProfile::fromText(
            textOf(R"({"calibration":{"name":"Mic","micCalFileReferenceSPL":94,)"
                   R"("reference":{"offsetDB":100,"calibratedAt":)" +
                   date + "}}}"));
    };
    const auto profile = calibratedAt(R"("2026-03-01T19:30:00Z")");
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->settings.calibration->reference->calibratedAt,
              *dateFromISO8601("2026-03-01T19:30:00Z"));
    EXPECT_FALSE(calibratedAt("794086200"));  // the settings store's form
}

TEST(SettingsProfile, whatIsNoProfileIsTurnedDown) {
    EXPECT_TRUE(SettingsProfile::fromText(textOf("{\"ofALaterVersion\":[1,{}]}")));
    const std::string valid = textOf("{}");
    for (std::size_t length = 0; length < valid.size(); ++length) {
        EXPECT_FALSE(SettingsProfile::fromText(valid.substr(0, length))) << length;
    }
    const std::vector<std::string> others{
        valid + "x",
        R"({"name":"Show","savedAt":"2026-03-01T19:30:00Z","settings":{}})",
        R"({"format":1,"savedAt":"2026-03-01T19:30:00Z","settings":{}})",
        R"({"format":1,"name":"Show","settings":{}})",
        R"({"format":1,"name":"Show","savedAt":"2026-03-01T19:30:00Z"})",
        "[" + valid + "]",
        "null",
        textOf("[]"),
        textOf("null"),
        textOf(R"({"viewMode":"Sideways"})"),
        textOf(R"({"octaveFraction":5})"),
        textOf(R"({"showPeakHold":1})"),
        textOf(R"({"panelSplitFraction":"0.5"})"),
        textOf(R"({"panelSplitFraction":1e999})"),
        textOf(R"({"panelSplitFraction":NaN})"),
        textOf(R"({"splMeterChannelID":"main"})"),
        textOf(R"({"channels":[{"name":"No id"}]})"),
        textOf(R"({"channelWindowLayouts":{"main":{}}})"),
        textOf("{\"rtaOverlayChannelIDs\":" + std::string(1'000'000, '[')),
        textOf("{\"unknown\":" + std::string(200, '[') + std::string(200, ']') + "}"),
        textOf("{\"targetCurveName\":{\"name\":\"\xFF\"}}"),
    };
    for (const std::string& text : others) {
        EXPECT_FALSE(SettingsProfile::fromText(text)) << text.substr(0, 200);
    }
}

TEST(SettingsProfile, nothingThatIsNoFileOfItsSizeIsRead) {
    const TarvaneTests::TemporaryFolder folder;
    EXPECT_TRUE(SettingsProfile::read(folder.write("profile.json", textOf("{}"))));
    EXPECT_TRUE(SettingsProfile::read(folder.write("mark.json", "\xEF\xBB\xBF" + textOf("{}"))));
    EXPECT_FALSE(SettingsProfile::read(folder.path() / "missing.json"));
    EXPECT_FALSE(SettingsProfile::read(folder.path()));

    const auto pipe = folder.path() / "pipe.json";
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_FALSE(SettingsProfile::read(pipe));
    const auto loop = folder.path() / "loop.json";
    std::filesystem::create_symlink(loop, loop);
    EXPECT_FALSE(SettingsProfile::read(loop));
    const auto endless = folder.path() / "endless.json";
    std::filesystem::create_symlink("/dev/zero", endless);
    EXPECT_FALSE(SettingsProfile::read(endless));

    const std::string blank(SettingsProfile::largestFileBytes - textOf("{}").size(), ' ');
    EXPECT_TRUE(SettingsProfile::read(folder.write("largest.json", textOf("{}") + blank)));
    EXPECT_FALSE(SettingsProfile::read(folder.write("larger.json", textOf("{}") + blank + " ")));
    const auto huge = folder.write("huge.json", textOf("{}"));
    std::filesystem::resize_file(huge, std::uintmax_t{100} << 30U);
    EXPECT_FALSE(SettingsProfile::read(huge));
}

TEST(SettingsProfile, whatCouldNotBeReadAgainIsNotWritten) {
    SettingsProfile profile;
    profile.name = "Show";
    profile.settings.panelSplitFraction = HUGE_VAL;
    EXPECT_FALSE(profile.text());
    profile.settings = {};
    profile.settings.targetCurveName.emplace().name =
        std::string(SettingsProfile::largestFileBytes, 'x');
    EXPECT_FALSE(profile.text());
}

}  // namespace SettingsProfileTests
}  // namespace TarvaneApp
