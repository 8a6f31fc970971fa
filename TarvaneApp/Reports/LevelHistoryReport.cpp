#include "Reports/LevelHistoryReport.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <variant>

#include "Displays/LevelHistory/LevelHistoryView.h"
#include "Displays/RawText.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Reports/ReportText.h"

namespace TarvaneApp {

using ReportText::level;
using TarvaneKit::CalibrationProfile;
using TarvaneKit::CalibrationSource;
using TarvaneKit::Date;
using TarvaneKit::LevelHistoryExtreme;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::LoudnessReadings;
using TarvaneKit::SPLHistoryRecorder;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

constexpr double shortestPause = 1.0;
constexpr int ruleLength = 72;
constexpr QChar ruleCharacter(0x2500);

// Statistics over an average, or over peaks, would mean nothing: they count a level that follows
// the programme.
SPLMetric statisticsMetric(const SPLMetric& shown, Weighting leqWeighting) {
    if (const auto* spl = std::get_if<SPLMetric::SPL>(&shown.reading)) {
        return spl->timeWeighting == TimeWeighting::infinite
                   ? SPLMetric::spl(spl->weighting, TimeWeighting::fast)
                   : shown;
    }
    if (const auto* peak = std::get_if<SPLMetric::Peak>(&shown.reading)) {
        return SPLMetric::spl(peak->weighting, TimeWeighting::fast);
    }
    if (std::holds_alternative<SPLMetric::Leq>(shown.reading)) {
        return SPLMetric::spl(leqWeighting, TimeWeighting::fast);
    }
    return shown == SPLMetric::loudness(LoudnessMetric::integrated)
               ? SPLMetric::loudness(LoudnessMetric::shortTerm)
               : shown;
}

// Time that the metric with the most of it was recorded: the first seconds of a loudness, and
// silence, are no pause.
double recordedSeconds(const SPLHistoryRecorder& recorder) {
    double most = 0.0;
    for (int metric = 0; metric < static_cast<int>(recorder.metrics().size()); ++metric) {
        most = std::max(most, recorder.recordedSeconds(metric));
    }
    return most;
}

QString calibrationText(const CalibrationProfile& calibration) {
    const QString offset = QString::asprintf("offset %+.1f dB", calibration.broadbandOffsetDB());
    switch (calibration.calibrationSource()) {
        case CalibrationSource::referenceTone:
            return QStringLiteral("Reference tone, ") + offset;
        case CalibrationSource::micCalFileSensFactor:
            return QStringLiteral("Mic cal file Sens Factor, ") + offset;
        case CalibrationSource::none:
            break;
    }
    return QStringLiteral("None (uncalibrated, levels in dBFS)");
}

// Writes the sections of one channel.
class Writer {
  public:
    Writer(const MeterEngine& engine, const ChannelInfo& channel, const MeterChannel& meter)
        : engine_(engine),
          channel_(channel),
          meter_(meter),
          recorder_(meter.levelHistory()),
          start_(*recorder_.sessionStartDate()),
          metric_(engine.historyMetric(channel.id)),
          offsetDB_(engine.splReadoutDisplayOffsetDB(channel.id)),
          unit_(QString::fromStdString(engine.levelUnitLabel(channel.id))) {}

    QString metricLabel() const { return displayLabel(metric_); }

    LevelHistoryReport::Section session() const {
        LevelHistoryReport::Section section{QStringLiteral("Session"), {}};
        section.rows.push_back({QStringLiteral("Session"), sessionText()});
        const double paused = recorder_.duration() - recordedSeconds(recorder_);
        if (paused >= shortestPause) {
            section.rows.push_back({QStringLiteral("Paused"), LevelHistoryView::timeLabel(paused)});
        }
        if (const auto lost = LostAudioTotal::of(meter_.live.lostAudio); lost.count > 0) {
            section.rows.push_back({QStringLiteral("Lost audio"), lostAudioText(lost)});
        }
        section.rows.push_back(
            {QStringLiteral("Input"),
             ReportText::name(meter_.levelHistoryInputDescription.value_or("Unknown"))});
        if (channel_.measuresLoudness) {
            section.rows.push_back({QStringLiteral("Levels"),
                                    QStringLiteral("LUFS (ITU-R BS.1770 / EBU R128), target ") +
                                        ReportText::name(engine_.loudnessTarget().name)});
        } else {
            section.rows.push_back(
                {QStringLiteral("Calibration"), calibrationText(channel_.calibration)});
            section.rows.push_back({QStringLiteral("Levels"), unit_ == QStringLiteral("dB")
                                                                  ? QStringLiteral("dB SPL")
                                                                  : QStringLiteral("dBFS")});
        }
        section.rows.push_back(
            {QStringLiteral("Resolution"), ReportText::number(recorder_.bucketSeconds()) +
                                               QStringLiteral(" s per history point")});
        return section;
    }

    LevelHistoryReport::Section levels() const {
        LevelHistoryReport::Section section{QStringLiteral("Levels"), {}};
        if (channel_.measuresLoudness) {
            const LoudnessReadings readings = meter_.live.loudness.value_or(LoudnessReadings{});
            for (const auto metric :
                 {LoudnessMetric::integrated, LoudnessMetric::range, LoudnessMetric::truePeakMax}) {
                section.rows.push_back(
                    {displayLabel(metric), level(readings[metric], loudnessUnit(metric))});
            }
        } else if (const QStringList leq = sessionLeqs(); !leq.isEmpty()) {
            section.rows.push_back(
                {QStringLiteral("Session Leq"), leq.join(QStringLiteral(" · "))});
        }
        const auto index = recorder_.index(metric_);
        const auto extremes = index ? recorder_.extremes(*index) : SPLHistoryRecorder::Extremes{};
        section.rows.push_back(
            {QStringLiteral("Max (%1)").arg(metricLabel()), extremeText(extremes.max)});
        section.rows.push_back(
            {QStringLiteral("Min (%1)").arg(metricLabel()), extremeText(extremes.min)});
        return section;
    }

    std::optional<LevelHistoryReport::Section> statistics() const {
        const SPLMetric metric = statisticsMetric(metric_, engine_.leqWeighting());
        const auto index = recorder_.index(metric);
        if (!index) {
            return std::nullopt;
        }
        LevelHistoryReport::Section section{QStringLiteral("Statistics · ") + displayLabel(metric),
                                            {}};
        QStringList exceeded;
        for (const double percent : {10.0, 50.0, 90.0}) {
            const auto levelDB = recorder_.exceedanceLevel(*index, percent);
            exceeded.append(levelDB ? levelText(*levelDB - offsetDB_) : QStringLiteral("—"));
        }
        section.rows.push_back({QStringLiteral("L10 / L50 / L90"),
                                exceeded.join(QStringLiteral(" / ")) + u' ' + unit_});
        const ActiveTrafficLight light = engine_.activeTrafficLight(channel_.id);
        const double recorded = recorder_.recordedSeconds(*index);
        for (const TarvaneKit::TrafficLightBand& band : light.config.bands) {
            const double above =
                recorder_.secondsAtOrAbove(*index, band.thresholdDB + light.offsetDB);
            const double percent = recorded > 0.0 ? above / recorded * 100.0 : 0.0;
            section.rows.push_back(
                {QStringLiteral("Time ≥ %1 %2").arg(ReportText::number(band.thresholdDB), unit_),
                 QStringLiteral("%1 (%2 %)")
                     .arg(LevelHistoryView::timeLabel(above), QString::number(percent, 'f', 1))});
        }
        return section;
    }

    QString footnote() const {
        return QStringLiteral(
                   "L10/L50/L90 are approximate (from history points, skipping the first %1 s "
                   "while "
                   "the detectors settle). Leq excludes paused time.")
            .arg(std::llround(recorder_.settleSeconds()));
    }

  private:
    QString sessionText() const {
        const Date end = ReportText::later(start_, recorder_.duration());
        const bool endsThatDay =
            ReportText::localTime(start_).date() == ReportText::localTime(end).date();
        return ReportText::dateTime(start_) + QStringLiteral(" – ") +
               (endsThatDay ? ReportText::time(end) : ReportText::dateTime(end)) +
               QStringLiteral(" (") + LevelHistoryView::timeLabel(recorder_.duration()) +
               (engine_.isRunning() ? QStringLiteral(", still recording)") : QStringLiteral(")"));
    }

    static QString lostAudioText(const LostAudioTotal& lost) {
        return QStringLiteral("%1 %2, %3 s")
            .arg(lost.count)
            .arg(lost.count == 1 ? QStringLiteral("gap") : QStringLiteral("gaps"),
                 QString::number(lost.seconds, 'f', 2));
    }

    QStringList sessionLeqs() const {
        QStringList leqs;
        for (const Weighting weighting : TarvaneKit::allCases<Weighting>()) {
            const auto index = recorder_.index(SPLMetric::spl(weighting, TimeWeighting::infinite));
            const auto latest = index ? recorder_.latestValue(*index) : std::nullopt;
            if (latest && std::isfinite(*latest)) {
                leqs.append(QStringLiteral("L%1eq %2")
                                .arg(rawText(weighting), level(*latest - offsetDB_, unit_)));
            }
        }
        return leqs;
    }

    QString extremeText(const std::optional<LevelHistoryExtreme>& extreme) const {
        return extreme ? QStringLiteral("%1 at %2 (%3)")
                             .arg(level(extreme->levelDB - offsetDB_, unit_),
                                  LevelHistoryView::timeLabel(extreme->elapsed),
                                  ReportText::time(ReportText::later(start_, extreme->elapsed)))
                       : QStringLiteral("—");
    }

    const MeterEngine& engine_;
    const ChannelInfo& channel_;
    const MeterChannel& meter_;
    const SPLHistoryRecorder& recorder_;
    const Date start_;
    const SPLMetric metric_;
    /// Taken off a recorded level, which is in the channel's calibrated scale.
    const double offsetDB_;
    const QString unit_;
};

// A channel that has recorded something; looking for it makes none.
const MeterChannel* recordedChannel(const MeterEngine& engine, const UUID& id) {
    const MeterChannel* meter = engine.findMeterChannel(id);
    return meter != nullptr && meter->hasLevelHistory() ? meter : nullptr;
}

}  // namespace

std::optional<LevelHistoryReport> LevelHistoryReport::make(const MeterEngine& engine,
                                                           const UUID& channelID, Date exportDate) {
    const auto channel = engine.channelInfo(channelID);
    const MeterChannel* meter = channel ? recordedChannel(engine, channelID) : nullptr;
    if (meter == nullptr) {
        return std::nullopt;
    }
    const Writer writer(engine, *channel, *meter);
    const QString name = ReportText::name(channel->name);
    LevelHistoryReport report{
        .channelID = channelID,
        .channelName = name,
        .title = name + QStringLiteral(" · Level History · ") + writer.metricLabel(),
        .subtitle = QStringLiteral("Exported ") + ReportText::dateTime(exportDate) +
                    QStringLiteral(" · Tarvane ") + QCoreApplication::applicationVersion(),
        .sections = {writer.session(), writer.levels()},
        .footnote = writer.footnote(),
        .sessionStart = *meter->levelHistory().sessionStartDate()};
    if (auto statistics = writer.statistics()) {
        report.sections.push_back(std::move(*statistics));
    }
    return report;
}

std::vector<ChannelInfo> LevelHistoryReport::exportableChannels(const MeterEngine& engine) {
    auto channels = engine.channelInfos();
    std::erase_if(channels, [&engine](const ChannelInfo& channel) {
        return recordedChannel(engine, channel.id) == nullptr;
    });
    return channels;
}

QString LevelHistoryReport::plainText() const {
    qsizetype width = 0;
    for (const Section& section : sections) {
        for (const Row& row : section.rows) {
            width = std::max(width, row.label.size());
        }
    }
    QString text = title + u'\n' + subtitle + u'\n';
    for (const Section& section : sections) {
        text += u'\n' + section.title.toUpper() + u'\n';
        for (const Row& row : section.rows) {
            text += QStringLiteral("  ") + row.label.leftJustified(width) + QStringLiteral("  ") +
                    row.value + u'\n';
        }
    }
    return text + u'\n' + footnote + u'\n';
}

QString LevelHistoryReport::plainText(const std::vector<LevelHistoryReport>& reports) {
    QStringList texts;
    for (const LevelHistoryReport& report : reports) {
        texts.append(report.plainText());
    }
    return texts.join(u'\n' + QString(ruleLength, ruleCharacter) + QStringLiteral("\n\n"));
}

QString LevelHistoryReport::suggestedFileName(const std::vector<LevelHistoryReport>& reports,
                                              Date now) {
    const auto earliest = std::ranges::min_element(reports, {}, &LevelHistoryReport::sessionStart);
    const Date date = earliest != reports.end() ? earliest->sessionStart : now;
    QString name = QStringLiteral("Level History ");
    if (reports.size() == 1) {
        name += ReportText::nameInFileName(reports.front().channelName) + u' ';
    }
    return name + ReportText::fileName(date);
}

}  // namespace TarvaneApp
