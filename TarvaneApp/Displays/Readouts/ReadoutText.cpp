#include "Displays/Readouts/ReadoutText.h"

#include <cmath>

#include "Displays/RawText.h"

namespace TarvaneApp {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::SPLMetric;

namespace {

struct Label {
    QString operator()(const SPLMetric::SPL& spl) const {
        return QStringLiteral("SPL %1 %2").arg(rawText(spl.weighting), rawText(spl.timeWeighting));
    }
    QString operator()(const SPLMetric::Peak& peak) const {
        return QStringLiteral("Peak %1").arg(rawText(peak.weighting));
    }
    QString operator()(const SPLMetric::Leq&) const { return QStringLiteral("Leq"); }
    QString operator()(const SPLMetric::Loudness& loudness) const {
        return displayLabel(loudness.metric);
    }
};

bool readsSPL(bool isCalibrated, bool showsDBFS) {
    return isCalibrated && !showsDBFS;
}

}  // namespace

QString levelText(double levelDB) {
    return std::isfinite(levelDB) ? QString::number(levelDB, 'f', 1) : QStringLiteral("—");
}

QString displayLabel(const SPLMetric& metric) {
    return std::visit(Label{}, metric.reading);
}

QString displayLabel(LoudnessMetric metric) {
    switch (metric) {
        case LoudnessMetric::momentary:
            return QStringLiteral("Momentary");
        case LoudnessMetric::shortTerm:
            return QStringLiteral("Short-Term");
        case LoudnessMetric::integrated:
            return QStringLiteral("Integrated");
        case LoudnessMetric::range:
            return QStringLiteral("Loudness Range");
        case LoudnessMetric::truePeakMax:
            return QStringLiteral("True Peak Max");
        case LoudnessMetric::momentaryMax:
            return QStringLiteral("Momentary Max");
        case LoudnessMetric::shortTermMax:
            return QStringLiteral("Short-Term Max");
    }
    return {};
}

QString shortLabel(LoudnessMetric metric) {
    switch (metric) {
        case LoudnessMetric::momentary:
            return QStringLiteral("M");
        case LoudnessMetric::shortTerm:
            return QStringLiteral("S");
        case LoudnessMetric::integrated:
            return QStringLiteral("I");
        case LoudnessMetric::range:
            return QStringLiteral("LRA");
        case LoudnessMetric::truePeakMax:
            return QStringLiteral("TP");
        case LoudnessMetric::momentaryMax:
            return QStringLiteral("M Max");
        case LoudnessMetric::shortTermMax:
            return QStringLiteral("S Max");
    }
    return {};
}

QString loudnessUnit(LoudnessMetric metric) {
    switch (metric) {
        case LoudnessMetric::range:
            return QStringLiteral("LU");
        case LoudnessMetric::truePeakMax:
            return QStringLiteral("dBTP");
        default:
            return QStringLiteral("LUFS");
    }
}

QString metricSuffix(bool isCalibrated, bool showsDBFS) {
    if (!isCalibrated) {
        return QStringLiteral("  (dBFS, uncalibrated)");
    }
    return showsDBFS ? QStringLiteral("  (dBFS)") : QString();
}

QString valueTemplate(bool isCalibrated, bool showsDBFS) {
    return readsSPL(isCalibrated, showsDBFS) ? QStringLiteral("000.0") : QStringLiteral("-00.0");
}

QString ordinaryValue(bool isCalibrated, bool showsDBFS) {
    return readsSPL(isCalibrated, showsDBFS) ? QStringLiteral("00.0") : QStringLiteral("-00.0");
}

QString levelUnit(bool isCalibrated, bool showsDBFS) {
    return readsSPL(isCalibrated, showsDBFS) ? QStringLiteral("dB SPL") : QStringLiteral("dBFS");
}

QString spokenLevel(double levelDB, const QString& unit) {
    const QString text = levelText(levelDB);
    return std::isfinite(levelDB) ? text + u' ' + unit : text;
}

QString sidesText(const std::vector<double>& sideValuesDB) {
    if (sideValuesDB.size() != 2) {
        return {};
    }
    return QStringLiteral("L %1   R %2")
        .arg(levelText(sideValuesDB[0]), levelText(sideValuesDB[1]));
}

}  // namespace TarvaneApp
