#include "Shell/Preferences/ChannelFolds.h"

#include <gtest/gtest.h>

#include "Support/MemoryStore.h"

namespace TarvaneApp {
namespace ChannelFoldsTests {

using TarvaneKit::UUID;

TEST(ChannelFolds, atFirstTheMainInputAloneIsUnfolded) {
    TarvaneTests::MemoryStore store;
    const ChannelFolds folds(store);
    EXPECT_TRUE(folds.isExpanded(UUID::main()));
    EXPECT_FALSE(folds.isExpanded(UUID::random()));
}

TEST(ChannelFolds, areRememberedByChannel) {
    TarvaneTests::MemoryStore store;
    const UUID stage = UUID::random();
    {
        ChannelFolds folds(store);
        folds.setExpanded(stage, true);
        folds.setExpanded(UUID::main(), false);
        EXPECT_TRUE(store.isFlushed());
    }
    ChannelFolds folds(store);
    EXPECT_TRUE(folds.isExpanded(stage));
    EXPECT_FALSE(folds.isExpanded(UUID::main()));
    folds.forget(stage);
    EXPECT_FALSE(ChannelFolds(store).isExpanded(stage));
}

TEST(ChannelFolds, whatIsStoredAndUnreadableCountsAsNothing) {
    TarvaneTests::MemoryStore store;
    store.setData("Preferences.expandedChannels", "{\"no id\": 3");
    EXPECT_TRUE(ChannelFolds(store).isExpanded(UUID::main()));
}

}  // namespace ChannelFoldsTests
}  // namespace TarvaneApp
