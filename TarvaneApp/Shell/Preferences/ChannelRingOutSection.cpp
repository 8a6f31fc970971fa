#include "Shell/Preferences/ChannelRingOutSection.h"

#include "DSP/RingOutSensitivity.h"
#include "Displays/RawText.h"
#include "Shell/Forms/EnumChoices.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

using TarvaneKit::RingOutSensitivity;

void addChannelRingOutSection(Form& form, const ChannelValues& channel) {
    FormSection& section = form.addSection(QStringLiteral("Ring-Out"));
    section.addToggle(QStringLiteral("Ring-Out alerts"), channel.ringOut());
    section
        .addPicker(QStringLiteral("Sensitivity"),
                   enumChoices<RingOutSensitivity>([](RingOutSensitivity sensitivity) {
                       return utf8Text(TarvaneKit::label(sensitivity));
                   }),
                   channel.display(&ChannelDisplaySettings::ringOutSensitivity))
        .enabledWhile(channel.ringOut().get);
    section.addHelp(QStringLiteral(
        "Low only flags clear, fast feedback build-ups; High warns earlier on slower or quieter "
        "ones but can be triggered by sustained notes. On by default for mics, off for digital "
        "feeds."));
}

}  // namespace TarvaneApp
