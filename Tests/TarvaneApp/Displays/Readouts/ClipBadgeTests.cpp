#include "Displays/Readouts/ClipBadge.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace ClipBadgeTests {

using TarvaneKit::InputClipState;

TEST(ClipBadge, showsNothingWithoutAClip) {
    EXPECT_EQ(ClipBadge{InputClipState::none}.opacity(), 0.0);
    EXPECT_EQ(ClipBadge{InputClipState::none}.help(), QString());
}

TEST(ClipBadge, anActiveClipIsAtFullStrength) {
    const ClipBadge badge{InputClipState::active};
    EXPECT_EQ(badge.text(), QStringLiteral("CLIP"));
    EXPECT_EQ(badge.opacity(), 1.0);
    EXPECT_EQ(badge.help(),
              QStringLiteral("Input is clipping (at digital full scale). Levels read lower than "
                             "the real SPL. Lower the input gain and recalibrate."));
}

TEST(ClipBadge, aPastClipIsLatchedAndFaint) {
    const ClipBadge badge{InputClipState::latched};
    EXPECT_EQ(badge.text(), QStringLiteral("CLIPPED"));
    EXPECT_EQ(badge.opacity(), 0.4);
    EXPECT_EQ(badge.help(),
              QStringLiteral("Input clipped since the last Min/Max reset, so the Max may read "
                             "low. Reset Min/Max to clear."));
}

TEST(ClipBadge, lostAudioIsTheQuietMarkWhereNothingClips) {
    const ClipBadge badge{.state = InputClipState::none,
                          .lost = {.count = 3, .seconds = 0.124, .lastElapsed = 75.0}};
    EXPECT_EQ(badge.text(), QStringLiteral("3 GAPS"));
    EXPECT_GT(badge.opacity(), 0.0);
    EXPECT_EQ(badge.lostAudioText(), QStringLiteral("3 gaps, 0.12 s"));
    EXPECT_EQ(badge.help(),
              QStringLiteral("Audio was lost since the start: 3 gaps, 0.12 s, the last at 1:15. "
                             "The audio server or this computer was too busy. What was lost is "
                             "in no reading."));
    EXPECT_EQ((ClipBadge{.state = InputClipState::none, .lost = {.count = 1, .seconds = 12.0}}
                   .lostAudioText()),
              QStringLiteral("1 gap, 12 s"));
    EXPECT_EQ((ClipBadge{.state = InputClipState::none, .lost = {.count = 1}}.text()),
              QStringLiteral("1 GAP"));
    EXPECT_EQ((ClipBadge{.state = InputClipState::none, .lost = {.count = 100}}.text()),
              QStringLiteral("GAPS"));
}

TEST(ClipBadge, aClipGoesAheadOfLostAudioAndBothAreExplained) {
    const ClipBadge badge{.state = InputClipState::latched, .lost = {.count = 2, .seconds = 1.0}};
    EXPECT_EQ(badge.text(), QStringLiteral("CLIPPED"));
    EXPECT_EQ(badge.clipText(), QStringLiteral("CLIPPED"));
    EXPECT_TRUE(badge.help().startsWith(QStringLiteral("Input clipped since")));
    EXPECT_TRUE(badge.help().contains(QStringLiteral("2 gaps, 1.00 s")));
}

}  // namespace ClipBadgeTests
}  // namespace TarvaneApp
