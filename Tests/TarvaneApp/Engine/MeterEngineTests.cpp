// What the face itself adds to its owners.

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace MeterEngineTests {

using MeterEngineTests = TarvaneTests::EngineFixture;

TEST_F(MeterEngineTests, settingsThatCannotBeSavedAreToldUntilTheUserHasReadIt) {
    EXPECT_FALSE(engine->errorMessage());
    store.failure.set("Tarvane couldn't save its settings.");
    EXPECT_EQ(engine->errorMessage(), "Tarvane couldn't save its settings.");
    // That saving works again takes no unread message away.
    store.failure.set(std::nullopt);
    EXPECT_EQ(engine->errorMessage(), "Tarvane couldn't save its settings.");
    engine->dismissError();
    store.failure.set("Tarvane still can't save its settings.");
    EXPECT_EQ(engine->errorMessage(), "Tarvane still can't save its settings.");
}

TEST_F(MeterEngineTests, aStoreThatCannotBeReadIsToldAtLaunch) {
    store.failure.set("Tarvane couldn't save its settings.");
    makeEngine();
    EXPECT_EQ(engine->errorMessage(), "Tarvane couldn't save its settings.");
}

}  // namespace MeterEngineTests
}  // namespace TarvaneApp
