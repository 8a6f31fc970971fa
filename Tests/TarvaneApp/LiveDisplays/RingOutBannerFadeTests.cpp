#include "LiveDisplays/RingOutBannerFade.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <algorithm>
#include <vector>

namespace TarvaneApp {
namespace RingOutBannerFadeTests {

RingOutBannerView banner(bool isLive = true) {
    return {.alert = TarvaneKit::RingAlert{.id = TarvaneKit::UUID::random(),
                                           .frequencyHz = 1250.0,
                                           .note = {.name = "D#6", .centsOffset = 8.0},
                                           .suggestedCutDB = -6.0,
                                           .suggestedQ = 10.0,
                                           .bandwidthHz = 40.0,
                                           .date = {}},
            .isLive = isLive};
}

class RingOutBannerFadeTests : public testing::Test {
  protected:
    void waitForPresence(double presence) {
        while (fade.shown().presence != presence) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
        QCoreApplication::processEvents();
    }

    std::vector<double> drawn;
    RingOutBannerFade fade{[this] { drawn.push_back(fade.shown().presence); }};
};

TEST_F(RingOutBannerFadeTests, withoutAnAlertNothingIsThere) {
    fade.follow({});
    EXPECT_FALSE(fade.shown().alert);
    EXPECT_TRUE(drawn.empty());
}

TEST_F(RingOutBannerFadeTests, anAlertComesByAndByAndStays) {
    fade.follow(banner());
    EXPECT_TRUE(fade.shown().alert);
    EXPECT_LT(fade.shown().presence, 1.0);
    waitForPresence(1.0);
    EXPECT_TRUE(std::ranges::is_sorted(drawn));
    const std::size_t steps = drawn.size();
    fade.follow(banner(false));
    EXPECT_FALSE(fade.shown().isLive);
    EXPECT_EQ(drawn.size(), steps) << "a ring that is held moves nothing";
}

TEST_F(RingOutBannerFadeTests, itsLastAlertIsSeenWhileItGoes) {
    fade.follow(banner());
    waitForPresence(1.0);
    fade.follow({});
    EXPECT_TRUE(fade.shown().alert);
    waitForPresence(0.0);
    EXPECT_FALSE(fade.shown().alert);
}

TEST_F(RingOutBannerFadeTests, anAlertThatComesBackGoesOnFromWhereItIs) {
    fade.follow(banner());
    waitForPresence(1.0);
    fade.follow({});
    fade.follow(banner());
    EXPECT_GT(fade.shown().presence, 0.0);
    waitForPresence(1.0);
    EXPECT_TRUE(fade.shown().alert);
}

}  // namespace RingOutBannerFadeTests
}  // namespace TarvaneApp
