#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelDisplaysRangeTests {

using TarvaneKit::UUID;

class ChannelDisplaysRangeTests : public TarvaneTests::EngineFixture {
  protected:
    void calibrate() {
        TarvaneKit::CalibrationProfile profile;
        profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 100.0,
                                                             .referenceDeviceUID = {},
                                                             .referenceDeviceName = {},
                                                             .calibratedAt = {},
                                                             .inputGainDB = {}};
        engine->calibration.set(profile);
    }
};

TEST_F(ChannelDisplaysRangeTests, eachUnitHasARangeOfItsOwn) {
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{-100.0, -20.0}));
    calibrate();
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{30.0, 110.0}));
    engine->setSpectrogramFloorDB(50.0, UUID::main());
    engine->splReadoutShowsDBFS.set(true);
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{-100.0, -20.0}));
    engine->splReadoutShowsDBFS.set(false);
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{50.0, 110.0}));
}

TEST_F(ChannelDisplaysRangeTests, theRowsOfACalibratedChannelAreInSPLWhateverItIsShownIn) {
    calibrate();
    EXPECT_EQ(engine->spectrogramColorMapRange(UUID::main()), (SpectrogramRange{30.0, 110.0}));
    engine->splReadoutShowsDBFS.set(true);
    EXPECT_EQ(engine->spectrogramColorMapRange(UUID::main()), (SpectrogramRange{0.0, 80.0}));
}

TEST_F(ChannelDisplaysRangeTests, floorAndCeilingStayThreeDBApart) {
    engine->setSpectrogramFloorDB(0.0, UUID::main());
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{-23.0, -20.0}));
    engine->setSpectrogramCeilingDB(-200.0, UUID::main());
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{-23.0, -20.0}));
}

TEST_F(ChannelDisplaysRangeTests, theSlidersBoundsGoWithTheUnit) {
    EXPECT_EQ(engine->spectrogramSliderBounds(UUID::main()), (SpectrogramRange{-140.0, 20.0}));
    calibrate();
    EXPECT_EQ(engine->spectrogramSliderBounds(UUID::main()), (SpectrogramRange{-60.0, 140.0}));
}

TEST_F(ChannelDisplaysRangeTests, anotherChannelKeepsItsOwn) {
    const auto stage = addChannel("Stage", "desk", 0);
    engine->setSpectrogramFloorDB(-80.0, stage.id);
    EXPECT_EQ(engine->spectrogramRange(stage.id), (SpectrogramRange{-80.0, -20.0}));
    EXPECT_EQ(engine->extraChannels()[0].spectrogramRanges.dbfs.floorDB, -80.0);
    EXPECT_EQ(engine->spectrogramRange(UUID::main()), (SpectrogramRange{-100.0, -20.0}));
}

}  // namespace ChannelDisplaysRangeTests
}  // namespace TarvaneApp
