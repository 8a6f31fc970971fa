#include "Settings/Persistence.h"

#include <gtest/gtest.h>

#include <limits>

#include "Calibration/CalibrationProfile.h"
#include "DSP/Weighting.h"
#include "Support/MemoryStore.h"

namespace TarvaneApp {
namespace PersistenceTests {
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

class PersistenceTests : public testing::Test {
  protected:
    TarvaneTests::MemoryStore store;
    Persistence persistence{store};
};

TEST_F(PersistenceTests, keysStandUnderTheProgramsName) {
    EXPECT_EQ(Persistence::storedName("splWeighting"), "Tarvane.splWeighting");
}

TEST_F(PersistenceTests, datesInStoredRecordsAreSecondsSinceTheYear2001) {
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{
        .offsetDB = 100.0,
        .referenceDeviceUID = {},
        .referenceDeviceName = {},
        .calibratedAt =
            *TarvaneKit::dateFromISO8601("2001-01-02T00:00:00Z"),  // a day of 86400 s later
        .inputGainDB = {}};
    persistence.save("calibration", profile);
    EXPECT_NE(store.data("Tarvane.calibration")->find("\"calibratedAt\":86400.0"),
              std::string::npos);
}

TEST_F(PersistenceTests, identifiersInListsAndMapsAreTexts) {
    persistence.save("rtaOverlayChannelIDs", std::vector{UUID::main()});
    EXPECT_EQ(store.data("Tarvane.rtaOverlayChannelIDs"),
              R"(["6A1D0000-0000-4000-8000-000000000001"])");
}

TEST_F(PersistenceTests, storesTextAndIdentifiersAsText) {
    persistence.save("deviceUID", std::string("mic"));
    persistence.save("splMeterChannelID", UUID::main());
    EXPECT_EQ(store.text("Tarvane.deviceUID"), "mic");
    EXPECT_EQ(store.text("Tarvane.splMeterChannelID"), "6A1D0000-0000-4000-8000-000000000001");
    EXPECT_EQ(persistence.load<UUID>("splMeterChannelID"), UUID::main());
}

TEST_F(PersistenceTests, storesFloatsAsNumbersAndTellsZeroFromAbsent) {
    EXPECT_FALSE(persistence.load<double>("leqIntegrationSeconds"));
    persistence.save("leqIntegrationSeconds", 0.0);
    EXPECT_EQ(store.number("Tarvane.leqIntegrationSeconds"), 0.0);
    EXPECT_EQ(persistence.load<double>("leqIntegrationSeconds"), 0.0);
}

TEST_F(PersistenceTests, storesEverythingElseAsJSON) {
    persistence.save("splReadoutShowsDBFS", true);
    persistence.save("splWeighting", Weighting::c);
    persistence.save("channelIndex", 3);
    EXPECT_EQ(store.data("Tarvane.splReadoutShowsDBFS"), "true");
    EXPECT_EQ(store.data("Tarvane.splWeighting"), "\"C\"");
    EXPECT_EQ(store.data("Tarvane.channelIndex"), "3");
    EXPECT_EQ(persistence.load<bool>("splReadoutShowsDBFS"), true);
}

TEST_F(PersistenceTests, flushesAfterEachWrite) {
    persistence.save("channelIndex", 3);
    EXPECT_TRUE(store.isFlushed());
    persistence.save("deviceUID", std::optional<std::string>());
    EXPECT_TRUE(store.isFlushed());
}

TEST_F(PersistenceTests, absentRemovesTheKey) {
    persistence.save("deviceUID", std::string("mic"));
    persistence.save("deviceUID", std::optional<std::string>());
    EXPECT_FALSE(store.contains("Tarvane.deviceUID"));
}

TEST_F(PersistenceTests, aValueWithoutAFormLeavesWhatIsStored) {
    TarvaneKit::CalibrationProfile profile;
    persistence.save("calibration", profile);
    const auto stored = store.data("Tarvane.calibration");
    profile.micCalFileReferenceSPL = std::numeric_limits<double>::infinity();
    persistence.save("calibration", profile);
    EXPECT_EQ(store.data("Tarvane.calibration"), stored);
}

TEST_F(PersistenceTests, whatDoesNotDecodeCountsAsAbsentAndStays) {
    store.setData("Tarvane.splWeighting", "\"B\"");
    store.setData("Tarvane.splReadoutShowsDBFS", "yes");
    store.setText("Tarvane.splMeterChannelID", "nonsense");
    EXPECT_FALSE(persistence.load<Weighting>("splWeighting"));
    EXPECT_FALSE(persistence.load<bool>("splReadoutShowsDBFS"));
    EXPECT_FALSE(persistence.load<UUID>("splMeterChannelID"));
    EXPECT_TRUE(store.contains("Tarvane.splWeighting"));
}

TEST_F(PersistenceTests, aPlainBooleanOfAnotherHandDoesNotLoad) {
    store.setText("Tarvane.splReadoutShowsDBFS", "true");
    EXPECT_FALSE(persistence.load<bool>("splReadoutShowsDBFS"));
}

}  // namespace PersistenceTests
}  // namespace TarvaneApp
