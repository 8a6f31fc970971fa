#include "Shell/Preferences/ChannelDisplaySection.h"

#include "DSP/OctaveFraction.h"
#include "Displays/RawText.h"
#include "Shell/ChannelControls/TargetCurveControls.h"
#include "Shell/Forms/EnumChoices.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

using TarvaneKit::OctaveFraction;

void addChannelDisplaySection(Form& form, const ChannelValues& channel) {
    FormSection& section = form.addSection(QStringLiteral("Display"));
    section.addColor(QStringLiteral("Color"), channel.color());
    section.addPicker(QStringLiteral("RTA view"), enumChoices<SpectrumViewMode>(),
                      channel.display(&ChannelDisplaySettings::viewMode));
    section.addPicker(QStringLiteral("Band resolution"),
                      enumChoices<OctaveFraction>([](OctaveFraction fraction) {
                          return utf8Text(TarvaneKit::label(fraction));
                      }),
                      channel.display(&ChannelDisplaySettings::octaveFraction));
    const auto showsPeakHold = channel.display(&ChannelDisplaySettings::showsPeakHold);
    section.addToggle(QStringLiteral("Show peak hold"), showsPeakHold);
    section
        .addColor(QStringLiteral("Peak hold color"),
                  channel.display(&ChannelDisplaySettings::peakHoldColor))
        .enabledWhile(showsPeakHold.get);
    section.addHelp(QStringLiteral("Turn on Show peak hold to change its color"))
        .shownWhile([showsPeakHold] { return !showsPeakHold.get(); });
    section.addToggle(QStringLiteral("Octave-normalized display"),
                      channel.display(&ChannelDisplaySettings::octaveNormalized));
    section.addHelp(QStringLiteral(
        "Boosts the Line view and Spectrogram toward high frequencies to match a constant-%-"
        "bandwidth analyzer, instead of showing raw per-bin FFT energy. Bars, peak numbers and "
        "ring-out detection are unaffected."));
    section.addControl({}, new TargetCurveControls(channel.engine(), channel.id(),
                                                   QStringLiteral("Reference level"), &section));
}

}  // namespace TarvaneApp
