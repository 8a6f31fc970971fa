#include "Calibration/CalibrationProfile.h"

#include <gtest/gtest.h>

namespace TarvaneKit {
namespace CalibrationProfileTests {

// 20 log10(2), the step from a Sens Factor's sine reference to the meter's scale.
constexpr double sineStepDB = 6.020599913279624;

CalibrationProfile withFile(std::optional<double> sensFactorDB) {
    CalibrationProfile profile;
    profile.micCalFile =
        MicCalFile{.sensFactorDB = sensFactorDB, .serialNumber = {}, .points = {{1000.0, 0.0}}};
    return profile;
}

CalibrationProfile withReference(double offsetDB, std::optional<double> inputGainDB) {
    CalibrationProfile profile;
    profile.reference = ReferenceCalibration{.offsetDB = offsetDB,
                                             .referenceDeviceUID = {},
                                             .referenceDeviceName = {},
                                             .calibratedAt = {},
                                             .inputGainDB = inputGainDB};
    return profile;
}

InputGainState gain(double currentDB, double maxDB) {
    return InputGainState::create(currentDB, maxDB, std::nullopt, false);
}

TEST(CalibrationProfile, isUncalibratedAtFirst) {
    const CalibrationProfile profile;
    EXPECT_EQ(profile.name, "Default");
    EXPECT_EQ(profile.micCalFileReferenceSPL, 94.0);
    EXPECT_EQ(profile.calibrationSource(), CalibrationSource::none);
    EXPECT_EQ(profile.broadbandOffsetDB(), 0.0);
    EXPECT_EQ(profile.inputGainCompensationDB(), 0.0);
    EXPECT_FALSE(profile.calibratedInputGainDB());
}

TEST(CalibrationProfile, sensFactorGivesReferenceSPLMinusFactorPlusTheSineStep) {
    const auto profile = withFile(-30.0);
    EXPECT_EQ(profile.calibrationSource(), CalibrationSource::micCalFileSensFactor);
    EXPECT_DOUBLE_EQ(profile.broadbandOffsetDB(), 94.0 + 30.0 + sineStepDB);
    EXPECT_FALSE(profile.calibratedInputGainDB());
}

TEST(CalibrationProfile, sensFactorCountsAsMeasuredAtMaximumGain) {
    auto profile = withFile(-30.0);
    profile.inputGain = gain(-12.0, 0.0);
    EXPECT_DOUBLE_EQ(profile.broadbandOffsetDB(), 94.0 + 30.0 + sineStepDB + 12.0);
    EXPECT_EQ(profile.inputGainCompensationDB(), 12.0);
    EXPECT_EQ(profile.calibratedInputGainDB(), 0.0);
}

TEST(CalibrationProfile, gainTurnedDownRaisesTheOffsetOfAReference) {
    auto profile = withReference(100.0, 0.0);
    profile.inputGain = gain(-6.0, 10.0);
    EXPECT_EQ(profile.broadbandOffsetDB(), 106.0);
    EXPECT_EQ(profile.inputGainCompensationDB(), 6.0);
    EXPECT_EQ(profile.calibratedInputGainDB(), 0.0);
}

TEST(CalibrationProfile, theOffsetAtAGivenGainIsThatOfAProfileWhichHasIt) {
    for (auto profile : {withReference(100.0, 0.0), withFile(-30.0), withFile(std::nullopt)}) {
        const double atGain = profile.broadbandOffsetDB(gain(-6.0, 10.0));
        profile.inputGain = gain(-6.0, 10.0);
        EXPECT_EQ(atGain, profile.broadbandOffsetDB());
        EXPECT_EQ(profile.broadbandOffsetDB(std::nullopt) + profile.inputGainCompensationDB(),
                  atGain);
    }
}

TEST(CalibrationProfile, referenceWithoutRecordedGainIsNeverCompensated) {
    auto profile = withReference(100.0, std::nullopt);
    profile.inputGain = gain(-6.0, 10.0);
    EXPECT_EQ(profile.broadbandOffsetDB(), 100.0);
    EXPECT_EQ(profile.inputGainCompensationDB(), 0.0);
    EXPECT_FALSE(profile.calibratedInputGainDB());
}

TEST(CalibrationProfile, referenceIsUncompensatedWhileTheDeviceReportsNoGain) {
    const auto profile = withReference(100.0, 0.0);
    EXPECT_EQ(profile.broadbandOffsetDB(), 100.0);
    EXPECT_EQ(profile.inputGainCompensationDB(), 0.0);
}

TEST(CalibrationProfile, referenceWinsOverAFileWithAndWithoutSensFactor) {
    for (const auto factor : {std::optional<double>(), std::optional(-30.0)}) {
        auto profile = withFile(factor);
        profile.reference = withReference(100.0, 0.0).reference;
        EXPECT_EQ(profile.calibrationSource(), CalibrationSource::referenceTone);
        EXPECT_EQ(profile.broadbandOffsetDB(), 100.0);
    }
}

TEST(CalibrationProfile, clearingTheReferenceFallsBackToTheFile) {
    auto profile = withFile(-30.0);
    profile.reference = withReference(100.0, 0.0).reference;
    profile.reference.reset();
    EXPECT_EQ(profile.calibrationSource(), CalibrationSource::micCalFileSensFactor);
}

TEST(CalibrationProfile, fileWithoutSensFactorLeavesReadingsInDBFS) {
    const auto profile = withFile(std::nullopt);
    EXPECT_EQ(profile.calibrationSource(), CalibrationSource::none);
    EXPECT_EQ(profile.broadbandOffsetDB(), 0.0);
}

TEST(CalibrationProfile, isStaleOnlyOnAnotherKnownDevice) {
    auto profile = withReference(100.0, 0.0);
    EXPECT_FALSE(profile.isStale("mic"));  // made on an unknown device
    profile.reference->referenceDeviceUID = "mic";
    EXPECT_FALSE(profile.isStale(std::nullopt));
    EXPECT_FALSE(profile.isStale("mic"));
    EXPECT_TRUE(profile.isStale("other"));
    EXPECT_FALSE(withFile(-30.0).isStale("other"));
}

TEST(CalibrationProfile, referenceOffsetIsKnownMinusMeasured) {
    const Date now = *dateFromISO8601("2026-03-01T19:30:00Z");
    const auto reference = ReferenceCalibration::fromReference({.measuredDBFS = -26.5,
                                                                .knownSPL = 94.0,
                                                                .deviceUID = "mic",
                                                                .deviceName = "Mic",
                                                                .inputGainDB = 3.0,
                                                                .now = now});
    EXPECT_EQ(reference.offsetDB, 120.5);
    EXPECT_EQ(reference.referenceDeviceUID, "mic");
    EXPECT_EQ(reference.referenceDeviceName, "Mic");
    EXPECT_EQ(reference.inputGainDB, 3.0);
    EXPECT_EQ(reference.calibratedAt, now);
}

TEST(InputGainState, unknownMinimumIsTheSmallerOfMaximumAndCurrent) {
    EXPECT_EQ(InputGainState::create(-12.0, 0.0, std::nullopt, false).minDB, -12.0);
    EXPECT_EQ(InputGainState::create(3.0, 0.0, std::nullopt, false).minDB, 0.0);
    EXPECT_EQ(InputGainState::create(3.0, 0.0, -40.0, true).minDB, -40.0);
}

TEST(CalibrationProfileCoding, writesOnlyNameAndReferenceSPLWhenNothingElseIsSet) {
    EXPECT_EQ(encode(CalibrationProfile{}), R"({"name":"Default","micCalFileReferenceSPL":94.0})");
}

TEST(CalibrationProfileCoding, liveGainIsNeverStored) {
    auto profile = withFile(-30.25);
    profile.micCalFile->serialNumber = "123-4";
    profile.reference =
        ReferenceCalibration{.offsetDB = 100.0,
                             .referenceDeviceUID = "mic",
                             .referenceDeviceName = "Mic",
                             .calibratedAt = *dateFromSecondsSinceReferenceDate(1234567.0),
                             .inputGainDB = 0.5};
    profile.inputGain = gain(-6.0, 10.0);

    const auto text = encode(profile);
    ASSERT_TRUE(text);
    auto expected = profile;
    expected.inputGain.reset();
    EXPECT_EQ(decode<CalibrationProfile>(*text), expected);
}

TEST(CalibrationProfileCoding, failsWithoutARequiredKey) {
    EXPECT_FALSE(decode<CalibrationProfile>(R"({"name":"x"})"));
    EXPECT_FALSE(decode<CalibrationProfile>(R"({"micCalFileReferenceSPL":94})"));
    EXPECT_FALSE(decode<CalibrationProfile>(
        R"({"name":"x","micCalFileReferenceSPL":94,"micCalFile":{"sensFactorDB":-1}})"));
    EXPECT_FALSE(decode<CalibrationProfile>(R"({"name":1,"micCalFileReferenceSPL":94})"));
    EXPECT_TRUE(decode<CalibrationProfile>(
        R"({"name":"x","micCalFileReferenceSPL":94,"reference":null,"unknown":[1]})"));
}

}  // namespace CalibrationProfileTests
}  // namespace TarvaneKit
