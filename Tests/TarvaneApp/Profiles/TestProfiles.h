// Profiles in a folder of their own, for tests of what shows them.
#pragma once

#include "Profiles/ProfileStore.h"
#include "Support/TemporaryFolder.h"
#include "TarvaneApp/Profiles/FixedPanels.h"

namespace TarvaneTests {

struct TestProfiles {
    TestProfiles(TarvaneApp::KeyValueStore& keyValueStore, const TarvaneApp::Clock& clock)
        : store({.folder = temporary.path() / "Profiles",
                 .store = keyValueStore,
                 .clock = clock,
                 .panels = panels}) {}

    TemporaryFolder temporary;
    FixedPanels panels;
    TarvaneApp::ProfileStore store;
};

}  // namespace TarvaneTests
