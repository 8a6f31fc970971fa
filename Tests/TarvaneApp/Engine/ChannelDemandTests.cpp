// Displays that count themselves in and out.

#include "Engine/ChannelDemand.h"

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelDemandTests {

using TarvaneKit::UUID;

class ChannelDemandTests : public TarvaneTests::EngineFixture {
  protected:
    bool isDemanded(const UUID& id = UUID::main()) {
        return engine->isDemanded(ChannelDemand::rta, id);
    }

    const UUID other = UUID::random();
};

TEST_F(ChannelDemandTests, aDisplayThatGoesTwiceTakesNothingFromAnother) {
    ChannelDemandRegistration stays;
    stays.update(*engine, {UUID::main()}, ChannelDemand::rta);
    {
        ChannelDemandRegistration goes;
        goes.update(*engine, {UUID::main()}, ChannelDemand::rta);
        goes.clear();
        EXPECT_TRUE(isDemanded());
        goes.clear();
        EXPECT_TRUE(isDemanded());
    }
    EXPECT_TRUE(isDemanded());
    stays.clear();
    EXPECT_FALSE(isDemanded());
}

TEST_F(ChannelDemandTests, aDisplayCountsOnceHoweverOftenItIsUpdated) {
    ChannelDemandRegistration display;
    for (int i = 0; i < 3; ++i) {
        display.update(*engine, {UUID::main(), other}, ChannelDemand::rta);
    }
    display.update(*engine, {other}, ChannelDemand::rta);
    EXPECT_FALSE(isDemanded());
    EXPECT_TRUE(isDemanded(other));
    display.clear();
    EXPECT_FALSE(isDemanded(other));
}

TEST_F(ChannelDemandTests, oneRemovedTooOftenLeavesNoDebt) {
    engine->removeDemand(ChannelDemand::rta, other);
    engine->addDemand(ChannelDemand::rta, other);
    EXPECT_TRUE(isDemanded(other));
    engine->removeDemand(ChannelDemand::rta, other);
    EXPECT_FALSE(isDemanded(other));
}

TEST_F(ChannelDemandTests, aDisplayMayOutliveTheEngine) {
    ChannelDemandRegistration display;
    display.update(*engine, {UUID::main()}, ChannelDemand::rta);
    engine.reset();
    display.clear();
}

}  // namespace ChannelDemandTests
}  // namespace TarvaneApp
