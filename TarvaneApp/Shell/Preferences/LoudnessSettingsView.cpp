#include "Shell/Preferences/LoudnessSettingsView.h"

#include <algorithm>
#include <vector>

#include "Displays/RawText.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Engine/MeterEngine.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::UUID;

namespace {

// A custom target is listed while it is set; choosing it changes nothing.
std::vector<FormChoice<LoudnessTarget>> targets(const LoudnessTarget& current) {
    std::vector<FormChoice<LoudnessTarget>> choices;
    for (const LoudnessTarget& preset : LoudnessTarget::presets()) {
        choices.push_back({utf8Text(preset.name), preset});
    }
    if (current.isCustom()) {
        choices.push_back({utf8Text(current.menuName()), current});
    }
    return choices;
}

// The meter itself offers more readings; one of them is listed while it is set.
std::vector<FormChoice<LoudnessMetric>> headlines(LoudnessMetric current) {
    std::vector<FormChoice<LoudnessMetric>> choices;
    for (const LoudnessMetric metric :
         {LoudnessMetric::momentary, LoudnessMetric::shortTerm, LoudnessMetric::integrated}) {
        choices.push_back({displayLabel(metric), metric});
    }
    if (std::ranges::find(choices, current, &FormChoice<LoudnessMetric>::value) == choices.end()) {
        choices.push_back({displayLabel(current), current});
    }
    return choices;
}

}  // namespace

LoudnessSettingsView::LoudnessSettingsView(MeterEngine& engine, QWidget* parent)
    : Form(parent), engine_(engine) {
    addTarget();
    addReadout();
    addChannels();
    followChannels(engine.channelChanges(), this, [this] { refresh(); });
}

void LoudnessSettingsView::addTarget() {
    FormSection& section = addSection(QStringLiteral("Target"));
    section.addPicker<LoudnessTarget>(
        QStringLiteral("Preset"), [this] { return targets(engine_.loudnessTarget()); },
        settingValue(engine_.loudnessTarget));
    const FormValue<LoudnessTarget> edited{
        .get = [this] { return engine_.loudnessTarget(); },
        .set =
            [this](const LoudnessTarget& target) {
                engine_.loudnessTarget.set(target.namedByItsNumbers());
            }};
    section.addStepper(
        QStringLiteral("Target"),
        {.lowest = -40.0, .highest = -5.0, .step = 0.5, .unit = QStringLiteral("LUFS")},
        fieldValue(edited, &LoudnessTarget::targetLUFS));
    section.addStepper(QStringLiteral("Tolerance"),
                       {.lowest = 0.5,
                        .highest = 5.0,
                        .step = 0.5,
                        .unit = QStringLiteral("LU"),
                        .prefix = QStringLiteral("±")},
                       fieldValue(edited, &LoudnessTarget::toleranceLU));
    section.addStepper(QStringLiteral("True peak ceiling"),
                       {.lowest = -10.0, .highest = 0.0, .step = 0.5, .unit = QStringLiteral("dB")},
                       fieldValue(edited, &LoudnessTarget::truePeakCeilingDBTP));
    section.addHelp(QStringLiteral(
        "The readout and Level History turn green within the tolerance of the target, red above "
        "it and yellow below it. True peak turns red above the ceiling. The colors can be changed "
        "in the Traffic Light tab."));
}

void LoudnessSettingsView::addReadout() {
    FormSection& section = addSection(QStringLiteral("Readout"));
    section.addPicker<LoudnessMetric>(
        QStringLiteral("Headline value"), [this] { return headlines(engine_.loudnessReadout()); },
        settingValue(engine_.loudnessReadout));
    section.addHelp(QStringLiteral(
        "Momentary is the last 400 ms, short-term the last 3 s, integrated the gated average since "
        "Start or the last Reset Integration. Level History graphs the same reading."));
}

void LoudnessSettingsView::addChannels() {
    addSection(QStringLiteral("Channels"))
        .addToggle(
            QStringLiteral("Main input measures loudness"),
            {.get = [this] { return engine_.mainInputMeasuresLoudness(); },
             .set =
                 [this](bool measures) { engine_.setMeasuresLoudness(measures, UUID::main()); }});
}

}  // namespace TarvaneApp
