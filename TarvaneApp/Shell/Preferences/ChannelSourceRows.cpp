#include "Shell/Preferences/ChannelSourceRows.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Shell/Forms/FormSection.h"
#include "Shell/Preferences/DeviceTitles.h"

namespace TarvaneApp {

namespace {

using DeviceChoice = FormChoice<std::optional<std::string>>;

// A stored device that is gone has an entry while it is set.
std::vector<DeviceChoice> deviceChoices(const MeterEngine& engine,
                                        const std::optional<std::string>& current) {
    std::vector<DeviceChoice> choices{{QStringLiteral("Default Input"), std::nullopt}};
    const auto& devices = engine.availableDevices();
    const auto titles = deviceTitles(devices);
    for (std::size_t i = 0; i < devices.size(); ++i) {
        choices.push_back({QString::fromStdString(titles[i]), devices[i].uid});
    }
    static const std::optional<std::string> systemOutput{TarvaneKit::systemOutputUID};
    choices.push_back(
        {QStringLiteral("System Output (what the computer is playing)"), systemOutput});
    if (std::ranges::find(choices, current, &DeviceChoice::value) == choices.end()) {
        choices.push_back({QStringLiteral("Unavailable Device"), current});
    }
    return choices;
}

QString inputTitle(int input) {
    return QStringLiteral("Input %1").arg(input + 1);
}

// A stored input that the device doesn't have has an entry while it is set.
std::vector<FormChoice<int>> inputChoices(const MeterEngine& engine,
                                          const std::optional<std::string>& deviceUID,
                                          int current) {
    const int inputs = std::max(engine.channelCount(deviceUID), 1);
    std::vector<FormChoice<int>> choices;
    for (int input = 0; input < inputs; ++input) {
        choices.push_back({inputTitle(input), input});
    }
    if (current >= inputs) {
        choices.push_back({inputTitle(current), current});
    }
    return choices;
}

FormRow& addInputPicker(FormSection& section, const QString& label, const ChannelValues& channel,
                        const FormValue<int>& input) {
    return section.addPicker<int>(
        label,
        [channel, input] {
            return inputChoices(channel.engine(), channel.device().get(), input.get());
        },
        input);
}

}  // namespace

void addChannelSourceRows(FormSection& section, const ChannelValues& channel) {
    section.addPicker<std::optional<std::string>>(
        QStringLiteral("Device"),
        [channel] { return deviceChoices(channel.engine(), channel.device().get()); },
        channel.device());
    section
        .addHelp(QStringLiteral("Measures what this computer is playing through its default "
                                "output, in stereo. No permission is needed."))
        .shownWhile([channel] { return channel.isSystemOutput(); });
    addInputPicker(section, QStringLiteral("Input"), channel, channel.input());
    section.addHelp(QStringLiteral(
        "Which input on this device your mic (or the feed you want to measure) is on."));
    section.addToggle(QStringLiteral("Stereo pair"), channel.isStereo());
    addInputPicker(section, QStringLiteral("Right channel"), channel, channel.rightInput())
        .shownWhile(channel.isStereo().get);
    section.addHelp(
        QStringLiteral("Reads two inputs as one stereo source: the RTA and spectrogram show both "
                       "sides power-averaged (no false notches from out-of-phase content), the SPL "
                       "meter the combined level with L and R beside it, Peak the higher side."));
}

}  // namespace TarvaneApp
