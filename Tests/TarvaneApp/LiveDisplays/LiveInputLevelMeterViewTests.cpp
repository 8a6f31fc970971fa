#include "LiveDisplays/LiveInputLevelMeterView.h"

#include <gtest/gtest.h>

#include <QAccessible>

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace LiveInputLevelMeterViewTests {

using TarvaneKit::UUID;

class LiveInputLevelMeterViewTests : public TarvaneTests::EngineFixture {
  protected:
    void play(double amplitude) {
        audio.feed("", {TarvaneTests::sine(1000.0, amplitude, 4800)});
        clock.advance(0.1);
        tick();
    }
    QString text(const LiveInputLevelMeterView& meter) { return meter.spokenParts().front().value; }
};

TEST_F(LiveInputLevelMeterViewTests, followsTheInputsPeak) {
    LiveInputLevelMeterView meter(*engine, UUID::main());
    meter.show();
    EXPECT_EQ(text(meter), QStringLiteral("Start metering to see the input level."));
    start();
    settle();
    EXPECT_EQ(text(meter), QStringLiteral("< -60 dBFS"));
    play(0.1);  // 20 log10(0.1) = -20 dBFS
    EXPECT_EQ(text(meter), QStringLiteral("-20.0 dBFS"));
    play(1.0);
    EXPECT_EQ(text(meter), QStringLiteral("CLIP"));
    engine->stop();
    settle();
    EXPECT_EQ(text(meter), QStringLiteral("Start metering to see the input level."));
}

TEST_F(LiveInputLevelMeterViewTests, aChannelThatNothingFeedsHasNoReading) {
    const auto channel = addChannel("B", "desk", 0);
    engine->updateChannel(channel.id, [](ChannelConfig& config) { config.isEnabled = false; });
    LiveInputLevelMeterView meter(*engine, channel.id);
    meter.show();
    start();
    settle();
    EXPECT_EQ(text(meter), QStringLiteral("—"));
}

TEST_F(LiveInputLevelMeterViewTests, outOfSightItFollowsNothing) {
    LiveInputLevelMeterView meter(*engine, UUID::main());
    meter.show();
    start();
    play(0.1);
    meter.hide();
    play(0.5);
    EXPECT_EQ(text(meter), QStringLiteral("-20.0 dBFS"));
    meter.show();
    EXPECT_EQ(text(meter), QStringLiteral("-6.0 dBFS"));  // 20 log10(0.5)
}

TEST_F(LiveInputLevelMeterViewTests, aScreenReaderReadsIt) {
    LiveInputLevelMeterView meter(*engine, UUID::main());
    meter.show();
    start();
    play(0.1);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&meter);
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Input level"));
    EXPECT_EQ(spoken->text(QAccessible::Value), QStringLiteral("-20.0 dBFS"));
}

}  // namespace LiveInputLevelMeterViewTests
}  // namespace TarvaneApp
