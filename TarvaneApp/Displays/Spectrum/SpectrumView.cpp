#include "Displays/Spectrum/SpectrumView.h"

#include <algorithm>
#include <cmath>

#include "Displays/Readouts/ReadoutText.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBand;
using TarvaneKit::TargetCurve;

namespace {

constexpr double levelStepDB = 20.0;
constexpr int targetCurveSteps = 200;

}  // namespace

double SpectrumView::y(double levelDB, double height) const {
    const double bottom = axisBottomDB();
    const double top = axisTopDB();
    if (!(levelDB > bottom)) {
        return height;
    }
    return levelDB > top ? 0.0 : height - height * ((levelDB - bottom) / (top - bottom));
}

double SpectrumView::levelAt(double y, double height) const {
    return axisBottomDB() + (height - y) / height * (axisTopDB() - axisBottomDB());
}

std::vector<double> SpectrumView::levelGridLines() const {
    std::vector<double> levels;
    for (double level = axisBottomDB(); level <= axisTopDB(); level += levelStepDB) {
        levels.push_back(level);
    }
    return levels;
}

std::vector<QPointF> SpectrumView::linePoints(const std::vector<double>& levelsDB,
                                              const QSizeF& size, std::optional<double> rate,
                                              std::optional<double> offset) const {
    const FrequencyAxis axis = frequencyAxis();
    const double lineHz = rate.value_or(sampleRate) / fftSize;
    const double offsetDB = offset.value_or(levelOffsetDB);
    std::vector<QPointF> points;
    points.reserve(levelsDB.size());
    for (std::size_t i = 0; i < levelsDB.size(); ++i) {
        const double frequencyHz = lineHz * static_cast<double>(i);
        if (frequencyHz > maxHz) {
            break;
        }
        if (frequencyHz >= minHz) {
            points.emplace_back(axis.x(frequencyHz, size.width()),
                                y(levelsDB[i] - offsetDB, size.height()));
        }
    }
    return points;
}

QRectF SpectrumView::bar(const FrequencyAxis& axis, const OctaveBand& band, double levelDB,
                         const QSizeF& size) const {
    const double left = axis.x(band.lowerEdgeHz, size.width());
    const double right = axis.x(band.upperEdgeHz, size.width());
    const double top = y(levelDB, size.height());
    return {left + 0.5, top, std::max(right - left - 1.0, 1.0), size.height() - top};
}

std::vector<QPointF> SpectrumView::targetCurvePoints(const TargetCurve& curve,
                                                     const QSizeF& size) const {
    std::vector<QPointF> points;
    if (curve.points.empty()) {
        return points;
    }
    const FrequencyAxis axis = frequencyAxis();
    for (int i = 0; i <= targetCurveSteps; ++i) {
        const double x = size.width() * i / targetCurveSteps;
        const double frequencyHz = axis.frequencyHz(i, targetCurveSteps);
        points.emplace_back(x,
                            y(*curve.level(frequencyHz) + targetCurveReferenceDB, size.height()));
    }
    return points;
}

std::optional<double> SpectrumView::ruleY(const std::optional<double>& levelDB,
                                          double height) const {
    return levelDB && *levelDB > axisBottomDB() && *levelDB < axisTopDB()
               ? std::optional(y(*levelDB, height))
               : std::nullopt;
}

std::optional<double> SpectrumView::levelDB(double atFrequencyHz) const {
    if (!lineSpectrumDB.empty()) {
        const double line = std::round(atFrequencyHz * fftSize / sampleRate);
        if (line >= 0.0 && line < static_cast<double>(lineSpectrumDB.size())) {
            return lineSpectrumDB[static_cast<std::size_t>(line)] - levelOffsetDB;
        }
    }
    const auto band = std::ranges::find_if(bands, [&](const OctaveBand& candidate) {
        return candidate.lowerEdgeHz <= atFrequencyHz && atFrequencyHz < candidate.upperEdgeHz;
    });
    const auto index = static_cast<std::size_t>(band - bands.begin());
    return band != bands.end() && index < bandLevelsDB.size()
               ? std::optional(bandLevelsDB[index] - levelOffsetDB)
               : std::nullopt;
}

QString SpectrumView::hoverLabel(double forFrequencyHz) const {
    QString frequency =
        forFrequencyHz < 1000.0
            ? QString::number(forFrequencyHz, 'f', 0) + QStringLiteral(" Hz")
            : QString::number(forFrequencyHz / 1000.0, 'f', 2) + QStringLiteral(" kHz");
    const auto level = levelDB(forFrequencyHz);
    if (!level) {
        return frequency;
    }
    return QStringLiteral("%1  %2 %3")
        .arg(frequency, levelText(*level),
             scale == RTAScale::dbfs ? QStringLiteral("dBFS") : QStringLiteral("dB"));
}

}  // namespace TarvaneApp
