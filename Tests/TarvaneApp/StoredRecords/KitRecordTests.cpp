// The laws of coding, for every record of the Kit.
#include "Calibration/CalibrationProfile.h"
#include "Core/RGBAColor.h"
#include "DSP/MusicalNote.h"
#include "Metrics/TrafficLightConfig.h"
#include "Support/CodingLaws.h"
#include "TargetCurves/TargetCurve.h"

namespace TarvaneKit::Testing {

using KitRecords = testing::Types<RGBAColor, TrafficLightBand, TrafficLightConfig,
                                  ReferenceCalibration, MicCalibrationPoint, MicCalFile,
                                  CalibrationProfile, TargetCurvePoint, TargetCurve, MusicalNote>;
INSTANTIATE_TYPED_TEST_SUITE_P(Kit, CodingLaws, KitRecords, RecordName);

}  // namespace TarvaneKit::Testing
