// The words and numbers that readouts show.
#pragma once

#include <QString>
#include <vector>

#include "Metrics/SPLMetric.h"

namespace TarvaneApp {

/// One decimal; "—" for a value that is not finite.
QString levelText(double levelDB);

/// The name of a reading as the user sees it, as "SPL A Fast", "Peak C", "Leq".
QString displayLabel(const TarvaneKit::SPLMetric& metric);

/// "Short-Term", "Loudness Range".
QString displayLabel(TarvaneKit::LoudnessMetric metric);

/// "M", "S", "I", "LRA", "TP", "M Max", "S Max".
QString shortLabel(TarvaneKit::LoudnessMetric metric);

/// "LUFS", "LU" of the range, "dBTP" of the true peak.
QString loudnessUnit(TarvaneKit::LoudnessMetric metric);

/// What follows the metric's name: nothing for dB SPL, else that the numbers are in dBFS.
QString metricSuffix(bool isCalibrated, bool showsDBFS);

/// The widest ordinary number of the readout, which sets the width of its column.
QString valueTemplate(bool isCalibrated, bool showsDBFS);

/// The longest number that is usual: the value stands in the middle as this would.
QString ordinaryValue(bool isCalibrated, bool showsDBFS);

/// "dB SPL" or "dBFS", for a screen reader.
QString levelUnit(bool isCalibrated, bool showsDBFS);

/// A value with its unit, as "-23.0 dBFS"; "—" alone for a value that is not finite.
QString spokenLevel(double levelDB, const QString& unit);

/// "L -23.0   R -24.1". Empty unless there are two sides.
QString sidesText(const std::vector<double>& sideValuesDB);

inline constexpr const char* sidesHelp = "Left and right sides; the large value combines both";

}  // namespace TarvaneApp
