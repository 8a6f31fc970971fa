#include "Shell/Preferences/TrafficLightSettingsView.h"

#include <QLabel>
#include <algorithm>
#include <cstddef>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Preferences/ColorRow.h"
#include "Shell/Preferences/LevelColorControl.h"

namespace TarvaneApp {

using TarvaneKit::RGBAColor;
using TarvaneKit::TrafficLightConfig;

namespace {

QString oneDecimal(double value) {
    return QString::number(value, 'f', 1);
}

// At least 1 dB long, where the band above has come down to the range's lower end.
NumberScale scaleOf(const TrafficLightConfig& config, std::size_t band,
                    const ThresholdRange& range) {
    return {.lowest = range.lowestDB,
            .highest = std::max(upperLimitDB(config, band, range), range.lowestDB + 1.0),
            .step = 1.0,
            .text = [](double levelDB) {
                return QString::number(levelDB, 'f', 0) + QStringLiteral(" dB");
            }};
}

// One band of the table: from which level, and its colour.
FormList::Item makeBand(Setting<TrafficLightConfig>& config, std::size_t band,
                        const ThresholdRange& range, QWidget* parent) {
    const QString title = QStringLiteral("At/above");
    const QString ordinal = QStringLiteral(", band %1").arg(band + 1);
    auto* control = new LevelColorControl(
        {.level = title + ordinal, .color = QStringLiteral("Color") + ordinal},
        [&config, band, range](double levelDB) {
            config.set(withThreshold(config(), band, levelDB, range));
        },
        [&config, band](const RGBAColor& color) {
            TrafficLightConfig edited = config();
            edited.bands[band].color = color;
            config.set(std::move(edited));
        },
        parent);
    control->addAhead(makeTextLabel(title, Theme::Text::body, Theme::primaryText, control));
    return {control, [&config, control, band, range] {
                control->showValues(scaleOf(config(), band, range),
                                    config().bands[band].thresholdDB, config().bands[band].color);
            }};
}

}  // namespace

TrafficLightSettingsView::TrafficLightSettingsView(MeterEngine& engine, QWidget* parent)
    : Form(parent), engine_(engine) {
    addThresholds(QStringLiteral("SPL Thresholds (calibrated, SPL readout)"),
                  engine.trafficLightConfig, splThresholds, TrafficLightConfig::defaultSPL());
    addThresholds(QStringLiteral("dBFS Thresholds (dBFS readout, or uncalibrated)"),
                  engine.trafficLightConfigDBFS, dbfsThresholds, TrafficLightConfig::defaultDBFS());
    addLoudness();
    followChannels(engine.channelChanges(), this, [this] { refresh(); });
}

void TrafficLightSettingsView::addThresholds(const QString& title,
                                             Setting<TrafficLightConfig>& config,
                                             const ThresholdRange& range,
                                             const TrafficLightConfig& defaultConfig) {
    FormSection& section = addSection(title);
    section.addList([&config] { return static_cast<int>(config().bands.size()); },
                    [&config, range](int place, QWidget* holder) {
                        return makeBand(config, static_cast<std::size_t>(place), range, holder);
                    });
    addColorRow(
        section, QStringLiteral("Below all thresholds →"), [] { return QString(); },
        fieldValue(settingValue(config), &TrafficLightConfig::belowAllColor));
    section
        .addButton(QStringLiteral("Reset to Default"),
                   [&config, &defaultConfig] { config.set(defaultConfig); })
        .enabledWhile([&config, &defaultConfig] { return config() != defaultConfig; });
}

void TrafficLightSettingsView::addLoudness() {
    FormSection& section = addSection(QStringLiteral("Loudness (LUFS channels)"));
    const auto target = [this]() -> const LoudnessTarget& { return engine_.loudnessTarget(); };
    const auto upper = [target] { return oneDecimal(target().targetLUFS + target().toleranceLU); };
    const auto lower = [target] { return oneDecimal(target().targetLUFS - target().toleranceLU); };
    const auto ceiling = [target] { return oneDecimal(target().truePeakCeilingDBTP); };
    const auto add = [&](const QString& title, RGBAColor LoudnessColors::*color,
                         std::function<QString()> detail) {
        addColorRow(section, title, std::move(detail),
                    fieldValue(settingValue(engine_.loudnessColors), color));
    };
    add(QStringLiteral("Above target"), &LoudnessColors::aboveTarget,
        [upper] { return QStringLiteral("louder than %1 LUFS").arg(upper()); });
    add(QStringLiteral("On target"), &LoudnessColors::onTarget,
        [lower, upper] { return QStringLiteral("%1 to %2 LUFS").arg(lower(), upper()); });
    add(QStringLiteral("Below target"), &LoudnessColors::belowTarget,
        [lower] { return QStringLiteral("quieter than %1 LUFS").arg(lower()); });
    add(QStringLiteral("True peak over ceiling"), &LoudnessColors::truePeakOver,
        [ceiling] { return QStringLiteral("above %1 dBTP").arg(ceiling()); });
    add(QStringLiteral("True peak within ceiling"), &LoudnessColors::truePeakWithin,
        [ceiling] { return QStringLiteral("at or below %1 dBTP").arg(ceiling()); });
    section.addHelp([target] {
        return QStringLiteral(
                   "Thresholds follow the loudness target (%1), set in the Loudness tab. These "
                   "colors apply to the loudness readout and to Level History on loudness "
                   "channels.")
            .arg(utf8Text(target().menuName()));
    });
    section
        .addButton(QStringLiteral("Reset to Default"),
                   [this] { engine_.loudnessColors.set(LoudnessColors{}); })
        .enabledWhile([this] { return engine_.loudnessColors() != LoudnessColors{}; });
}

}  // namespace TarvaneApp
