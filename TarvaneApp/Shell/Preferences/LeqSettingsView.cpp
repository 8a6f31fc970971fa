#include "Shell/Preferences/LeqSettingsView.h"

#include <algorithm>

#include "Engine/MeterEngine.h"
#include "Shell/ChannelControls/LeqPresets.h"
#include "Shell/Forms/EnumChoices.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

using TarvaneKit::Weighting;

namespace {

// A stored time without a preset has an entry of its own.
std::vector<FormChoice<double>> times(double current) {
    std::vector<FormChoice<double>> choices;
    for (const LeqPreset& preset : leqPresets) {
        choices.push_back({QString::fromLatin1(preset.label), preset.seconds});
    }
    if (std::ranges::find(leqPresets, current, &LeqPreset::seconds) == leqPresets.end()) {
        choices.push_back({leqTimeLabel(current), current});
    }
    return choices;
}

}  // namespace

LeqSettingsView::LeqSettingsView(MeterEngine& engine, QWidget* parent) : Form(parent) {
    FormSection& section = addSection(QStringLiteral("User-Definable Leq"));
    section.addPicker(QStringLiteral("Weighting"), enumChoices<Weighting>(),
                      settingValue(engine.leqWeighting));
    section.addPicker<double>(
        QStringLiteral("Integration time"),
        [&engine] { return times(engine.leqIntegrationSeconds()); },
        settingValue(engine.leqIntegrationSeconds));
    section.addButton(QStringLiteral("Apply"), [&engine] {
        engine.configureLeq(engine.leqWeighting(), engine.leqIntegrationSeconds());
    });
    section.addHelp(QStringLiteral("Applying resets the current Leq accumulation."));
    followChannels(engine.channelChanges(), this, [this] { refresh(); });
}

}  // namespace TarvaneApp
