#include "Displays/Spectrum/SpectrumView.h"

#include <algorithm>
#include <cmath>

#include "Displays/Readouts/ReadoutText.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBand;

namespace {

constexpr double levelStepDB = 20.0;

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
