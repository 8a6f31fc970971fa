#include "Records/SettingsSnapshot.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace SettingsSnapshotTests {
using TarvaneKit::decode;
using TarvaneKit::encode;

TEST(SettingsSnapshot, anAbsentChoiceAndAnEmptyOneAreTwoThings) {
    const auto silent = decode<SettingsSnapshot>("{}");
    ASSERT_TRUE(silent);
    EXPECT_EQ(*silent, SettingsSnapshot{});
    const auto none =
        decode<SettingsSnapshot>(R"({"targetCurveName":{},"levelHistoryChannelID":{}})");
    ASSERT_TRUE(none);
    ASSERT_TRUE(none->targetCurveName);
    EXPECT_EQ(none->targetCurveName->name, std::nullopt);
    ASSERT_TRUE(none->levelHistoryChannelID);
    EXPECT_EQ(none->levelHistoryChannelID->id, std::nullopt);
    EXPECT_EQ(encode(*none), R"({"targetCurveName":{},"levelHistoryChannelID":{}})");
}

TEST(SettingsSnapshot, anAudioInputNamesItsInput) {
    EXPECT_FALSE(decode<SettingsSnapshot>(R"({"audioInput":{"deviceUID":"mic"}})"));
    const auto byDefault = decode<SettingsSnapshot>(R"({"audioInput":{"channelIndex":1}})");
    ASSERT_TRUE(byDefault);
    EXPECT_EQ(byDefault->audioInput, (SettingsSnapshot::AudioInput{std::nullopt, 1}));
}

TEST(SettingsSnapshot, aWholeNumberNeverWraps) {
    const auto index = [](const std::string& number) {
        return decode<SettingsSnapshot>(R"({"mainInputRightChannelIndex":)" + number + "}");
    };
    EXPECT_EQ(index("6.0")->mainInputRightChannelIndex, 6);
    EXPECT_EQ(index("-1")->mainInputRightChannelIndex, -1);
    for (const char* number : {"4294967296", "18446744073709551616", "6.5", "1e300", "true"}) {
        EXPECT_FALSE(index(number)) << number;
    }
}

TEST(SettingsSnapshot, layoutsAreAnObjectWithTheChannelsIDsAsItsNames) {
    const TarvaneKit::UUID id = TarvaneKit::UUID::random();
    SettingsSnapshot snapshot;
    snapshot.channelWindowLayouts.emplace()[id].showsRTA = false;
    const auto json = TarvaneKit::encodeJSON(snapshot, TarvaneKit::DateForm::iso8601);
    const auto* layouts = json.member("channelWindowLayouts");
    ASSERT_NE(layouts, nullptr);
    const auto* layout = layouts->member(id.text());
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(layout->member("showsRTA")->content, (TarvaneKit::JSONValue{{false}}.content));
}

}  // namespace SettingsSnapshotTests
}  // namespace TarvaneApp
