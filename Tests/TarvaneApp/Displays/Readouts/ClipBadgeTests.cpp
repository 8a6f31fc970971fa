#include "Displays/Readouts/ClipBadge.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace {

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

}  // namespace
}  // namespace TarvaneApp
