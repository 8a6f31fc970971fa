#include "Shell/Preferences/ChannelSignalSection.h"

#include <vector>

#include "Displays/RawText.h"
#include "Shell/ChannelControls/ReadoutUnits.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

namespace {

QString unitHelp(const ChannelValues& channel) {
    QString help;
    switch (channel.readoutUnit().get()) {
        case ReadoutUnit::spl:
            help = QStringLiteral(
                "dB SPL: calibrated sound pressure level, with the SPL traffic-light thresholds.");
            break;
        case ReadoutUnit::dbfs:
            help = QStringLiteral(
                "dBFS: level relative to digital full scale, with the dBFS traffic-light "
                "thresholds.");
            if (!channel.isDigital().get() && !channel.engine().isCalibrated(channel.id())) {
                help += QStringLiteral(" Calibrate below to read in dB SPL.");
            }
            break;
        case ReadoutUnit::lufs:
            help = QStringLiteral(
                "LUFS: program loudness (ITU-R BS.1770, EBU R128), with the colors of the loudness "
                "target.");
            break;
    }
    return help + QStringLiteral(" Also switchable in the SPL meter's toolbar.");
}

}  // namespace

void addChannelSignalSection(Form& form, const ChannelValues& channel) {
    FormSection& section = form.addSection(QStringLiteral("Signal"));
    const auto hasChoice = [channel] { return !channel.isSystemOutput(); };
    section
        .addPicker(QStringLiteral("Source"),
                   std::vector<FormChoice<bool>>{{QStringLiteral("Microphone"), false},
                                                 {QStringLiteral("Digital feed"), true}},
                   channel.isDigital())
        .shownWhile(hasChoice);
    section
        .addReading(QStringLiteral("Source"),
                    [] { return QStringLiteral("Digital (the computer's output)"); })
        .shownWhile([channel] { return channel.isSystemOutput(); });
    section
        .addHelp([channel] {
            return channel.isDigital().get()
                       ? QStringLiteral(
                             "A console bus, network audio, loopback or playback feed: no acoustic "
                             "reference, so no calibration (any mic calibration is kept, set "
                             "aside). Chosen automatically for network audio and virtual audio "
                             "devices.")
                       : QStringLiteral(
                             "A measurement mic: calibrate it below to read sound pressure level "
                             "in dB SPL.");
        })
        .shownWhile(hasChoice);
    section.addPicker<ReadoutUnit>(
        QStringLiteral("Readout"),
        [channel] {
            std::vector<FormChoice<ReadoutUnit>> choices;
            for (const ReadoutUnit unit : offeredReadoutUnits(channel.engine(), channel.id())) {
                choices.push_back({rawText(unit), unit});
            }
            return choices;
        },
        channel.readoutUnit());
    section.addHelp([channel] { return unitHelp(channel); });
}

}  // namespace TarvaneApp
