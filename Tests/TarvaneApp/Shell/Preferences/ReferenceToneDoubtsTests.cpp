#include "Shell/Preferences/ReferenceToneDoubts.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace ReferenceToneDoubtsTests {

using TarvaneKit::Weighting;

HeardTone steady(std::optional<double> frequencyHz) {
    return {.tone = {.spreadDB = 0.1, .frequencyHz = frequencyHz}};
}

TEST(ReferenceToneDoubts, aCalibratorsToneLeavesNone) {
    for (const Weighting weighting : {Weighting::a, Weighting::c, Weighting::z}) {
        HeardTone heard = steady(1000.0);
        heard.weighting = weighting;
        EXPECT_TRUE(referenceToneDoubts(heard).isEmpty());
    }
}

TEST(ReferenceToneDoubts, aPistonphoneIsFineButUnderAWeighting) {
    HeardTone heard = steady(251.0);
    EXPECT_TRUE(referenceToneDoubts(heard).isEmpty());
    heard.weighting = Weighting::c;
    EXPECT_TRUE(referenceToneDoubts(heard).isEmpty());
    heard.weighting = Weighting::a;
    // A at 250 Hz is -8.6 dB (IEC 61672-1, table 3).
    EXPECT_EQ(referenceToneDoubts(heard),
              QStringList{"A weighting reads 250 Hz 8.6 dB low: choose C or Z weighting for this "
                          "channel before calibrating."});
}

TEST(ReferenceToneDoubts, anotherToneAndNoneAreTold) {
    EXPECT_EQ(referenceToneDoubts(steady(440.2)),
              QStringList{"The strongest tone is at 440 Hz: calibrators play 1 kHz, pistonphones "
                          "250 Hz."});
    EXPECT_EQ(referenceToneDoubts(steady(std::nullopt)),
              QStringList{"No tone stands out: calibrators play 1 kHz, pistonphones 250 Hz."});
}

TEST(ReferenceToneDoubts, aLevelThatMovesIsTold) {
    HeardTone heard = steady(1000.0);
    heard.tone.spreadDB = 2.34;
    EXPECT_EQ(referenceToneDoubts(heard),
              QStringList{"The tone isn't steady: its level moved by 2.3 dB within 2 seconds."});
}

TEST(ReferenceToneDoubts, aClippingInputAndAPeakMeterAreTold) {
    HeardTone heard = steady(1000.0);
    heard.isClipping = true;
    heard.metric = MetricMode::peak;
    EXPECT_EQ(referenceToneDoubts(heard),
              (QStringList{"The input is clipping: lower its gain before calibrating.",
                           "This channel's meter shows Peak, which is 3 dB above the level of a "
                           "tone: choose SPL before calibrating."}));
}

}  // namespace ReferenceToneDoubtsTests
}  // namespace TarvaneApp
