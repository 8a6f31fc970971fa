#include "Displays/LevelHistory/LevelHistoryView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "Displays/Readouts/ReadoutText.h"

namespace TarvaneApp {

using TarvaneKit::LevelHistoryExtreme;
using TarvaneKit::RGBAColor;

namespace {

constexpr double rightMargin = 8.0;
constexpr double paddingDB = 3.0;
constexpr double stepDB = 10.0;
constexpr double coarseStepDB = 20.0;
constexpr double widestFineRangeDB = 80.0;
constexpr double shortestAxisDB = 20.0;
// No sound is beyond; a level that a calibration of nonsense makes of one stands at the axis's end.
constexpr double farthestDB = 1000.0;
constexpr double labelsApart = 14.0;
constexpr double ticksApart = 80.0;
// A tick up to this far beyond the end counts as on it.
constexpr double tickTolerance = 0.001;

}  // namespace

QRectF LevelHistoryView::plot(const QSizeF& size) const {
    return {leftGutter, topInset, std::max(size.width() - leftGutter - rightMargin, 1.0),
            std::max(size.height() - topInset - bottomGutter, 1.0)};
}

LevelHistoryViewport::Session LevelHistoryView::session() const {
    return {.duration = recorder != nullptr ? recorder->duration() : 0.0,
            .presetWindow = windowSeconds};
}

LevelHistoryView::Span LevelHistoryView::yRange(const LevelHistoryTraces& traces) const {
    if (fixedDBRange) {
        return *fixedDBRange;
    }
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();
    const auto include = [&](const LevelHistoryTraces::Envelope& envelope) {
        for (const auto& column : envelope) {
            if (column) {
                lowest = std::min(lowest, column->minDB);
                highest = std::max(highest, column->maxDB);
            }
        }
    };
    include(traces.primary);
    include(traces.secondary);
    std::ranges::for_each(traces.overlays, include);
    if (!(lowest <= highest)) {
        return unitLabel == QStringLiteral("dB") ? Span{30.0, 110.0} : Span{-80.0, 0.0};
    }
    lowest = std::clamp(lowest, -farthestDB, farthestDB);
    highest = std::clamp(highest, -farthestDB, farthestDB);
    Span axis{std::floor((lowest - paddingDB) / stepDB) * stepDB,
              std::ceil((highest + paddingDB) / stepDB) * stepDB};
    if (axis.highest - axis.lowest < shortestAxisDB) {
        const double middle = (axis.lowest + axis.highest) / 2.0;
        axis.lowest = std::floor(middle / stepDB) * stepDB - stepDB;
        axis.highest = axis.lowest + shortestAxisDB;
    }
    return axis;
}

double LevelHistoryView::y(double levelDB, const Span& axis, const QRectF& plot) {
    const double limited = std::clamp(levelDB, axis.lowest, axis.highest);
    return plot.bottom() - plot.height() * (limited - axis.lowest) / (axis.highest - axis.lowest);
}

double LevelHistoryView::levelAt(double y, const Span& axis, const QRectF& plot) {
    return axis.lowest + (plot.bottom() - y) / plot.height() * (axis.highest - axis.lowest);
}

double LevelHistoryView::x(double elapsed, const LevelHistoryViewport::Range& range,
                           const QRectF& plot) {
    return plot.left() + plot.width() * (elapsed - range.from) / range.span();
}

double LevelHistoryView::elapsedAt(double x, const LevelHistoryViewport::Range& range,
                                   const QRectF& plot) {
    return range.from + (x - plot.left()) / plot.width() * range.span();
}

std::vector<double> LevelHistoryView::levelTicks(const Span& axis) {
    const double step = axis.highest - axis.lowest > widestFineRangeDB ? coarseStepDB : stepDB;
    std::vector<double> ticks;
    for (int i = 0; axis.lowest + i * step <= axis.highest + tickTolerance; ++i) {
        ticks.push_back(axis.lowest + i * step);
    }
    return ticks;
}

std::vector<double> LevelHistoryView::levelLabels(const Span& axis, double plotHeight) {
    std::vector<double> labels;
    double lastY = -labelsApart;
    for (const double level : levelTicks(axis)) {
        const double y = plotHeight * (level - axis.lowest) / (axis.highest - axis.lowest);
        if (y - lastY >= labelsApart) {
            labels.push_back(level);
            lastY = y;
        }
    }
    return labels;
}

double LevelHistoryView::timeStep(double span, double width) {
    constexpr std::array steps{1.0,    2.0,    5.0,     10.0,    15.0,   30.0,
                               60.0,   120.0,  300.0,   600.0,   900.0,  1800.0,
                               3600.0, 7200.0, 10800.0, 21600.0, 43200.0};
    constexpr double longest = 86400.0;
    const double limit = std::max(width / ticksApart, 1.0);
    const auto step =
        std::ranges::find_if(steps, [&](double candidate) { return span / candidate <= limit; });
    return step != steps.end() ? *step : longest;
}

std::vector<double> LevelHistoryView::timeTicks(const LevelHistoryViewport::Range& range,
                                                double width) {
    const double step = timeStep(range.span(), width);
    const double first = std::ceil(range.from / step);
    std::vector<double> ticks;
    for (int i = 0; (first + i) * step <= range.to + tickTolerance; ++i) {
        ticks.push_back((first + i) * step);
    }
    return ticks;
}

QString LevelHistoryView::timeLabel(double elapsed) {
    const auto seconds = static_cast<long long>(std::max(std::floor(elapsed), 0.0));
    const auto padded = [](long long number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    constexpr long long hour = 3600;
    return seconds < hour ? QStringLiteral("%1:%2").arg(seconds / 60).arg(padded(seconds % 60))
                          : QStringLiteral("%1:%2:%3")
                                .arg(seconds / hour)
                                .arg(padded(seconds % hour / 60), padded(seconds % 60));
}

QString LevelHistoryView::extremeLabel(const LevelHistoryExtreme& extreme) const {
    return QStringLiteral("%1 %2 %3")
        .arg(levelText(extreme.levelDB - displayOffsetDB), unitLabel, timeLabel(extreme.elapsed));
}

RGBAColor LevelHistoryView::columnColor(double maxDB) const {
    return trafficLight.color(maxDB + displayOffsetDB - trafficLightOffsetDB);
}

}  // namespace TarvaneApp
