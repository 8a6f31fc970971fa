#include "Shell/Preferences/ChannelInputGainSection.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSlider>
#include <cmath>
#include <memory>

#include "Displays/Theme.h"
#include "LiveDisplays/LiveInputLevelMeterView.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Forms/FormWarning.h"
#include "Shell/Forms/ValueSlider.h"
#include "Shell/Preferences/SignedDB.h"

namespace TarvaneApp {

using TarvaneKit::InputGainState;

namespace {

// Less than a tenth of a decibel shows as none.
constexpr double smallestCompensationDB = 0.05;

NumberScale gainScale(const InputGainState& gain) {
    return {.lowest = gain.minDB, .highest = gain.maxDB, .step = 1.0, .text = [](double gainDB) {
                return QString::number(gainDB, 'f', 1) + " dB";
            }};
}

// What stood in the way of the last setting, until one succeeds.
using Failure = std::shared_ptr<QString>;

void note(const Failure& failure, const std::optional<std::string>& reason) {
    *failure = QString::fromStdString(reason.value_or(""));
}

// The slider, and the button for its upper end.
void addGainSlider(FormSection& section, const ChannelValues& channel, const Failure& failure) {
    auto* holder = new QWidget(&section);
    const auto set = [channel, failure, &section](double gainDB) {
        note(failure, channel.setGain(gainDB));
        section.refresh();
    };
    auto* slider =
        new ValueSlider(gainScale(channel.gain().value_or(InputGainState{})), set, holder);
    slider->slider().setAccessibleName(QStringLiteral("Input gain"));
    auto* largest = makeFormButton(
        QStringLiteral("Max"),
        [channel, set] {
            if (const auto gain = channel.gain()) {
                set(gain->maxDB);
            }
        },
        holder);
    largest->setToolTip(QStringLiteral("Set to Maximum"));
    auto* row = layOutRow(holder, Theme::Space::row);
    row->addWidget(slider, 1);
    row->addWidget(largest);
    section
        .addControl(QStringLiteral("Input gain"), holder,
                    [channel, slider] {
                        if (const auto gain = channel.gain()) {
                            slider->setScale(gainScale(*gain));
                            slider->setValue(gain->currentDB);
                        }
                    })
        .shownWhile([channel] { return channel.gain().has_value(); });
}

void addVolumeRows(FormSection& section, const ChannelValues& channel, const Failure& failure) {
    const auto& volume = channel.engine().currentInputVolumeScalar;
    const auto percent = [&volume] { return std::round(100.0 * volume().value_or(0.0F)); };
    const auto isThere = [channel, &volume] {
        return channel.isMain() && !channel.gain() && volume();
    };
    section
        .addSlider(QStringLiteral("Input volume"),
                   {.lowest = 0.0,
                    .highest = 100.0,
                    .step = 1.0,
                    .text = [](double value) { return QString::number(value, 'f', 0) + u'%'; }},
                   {.get = percent,
                    .set =
                        [channel, failure, &section](double value) {
                            note(failure, channel.engine().setInputVolume(
                                              static_cast<float>(value / 100.0)));
                            section.refresh();
                        }})
        .shownWhile(isThere);
    section
        .addReading(QStringLiteral("Current volume"),
                    [percent] {
                        return QString::number(percent(), 'f', 0) +
                               QStringLiteral("%  (gain not reported — not compensated)");
                    })
        .shownWhile(isThere);
    section.addHelp(QStringLiteral("Not adjustable in software for this device"))
        .shownWhile([channel, isThere] { return !channel.gain() && !isThere(); });
}

void addCompensationRows(FormSection& section, const ChannelValues& channel) {
    section
        .addHelp(QStringLiteral(
            "This device has one input gain for all its inputs, so this also changes the other "
            "channels on it. SPL compensation follows on every calibrated channel."))
        .shownWhile([channel] { return channel.gain().value_or(InputGainState{}).isShared; });
    section
        .addReading(QStringLiteral("SPL compensation"),
                    [channel] { return signedDB(channel.calibration().inputGainCompensationDB()); })
        .shownWhile([channel] {
            return std::abs(channel.calibration().inputGainCompensationDB()) >=
                   smallestCompensationDB;
        });
    addWarning(section, [channel] {
        const auto profile = channel.calibration();
        return profile.reference && !profile.reference->inputGainDB && profile.inputGain
                   ? QStringLiteral(
                         "This reference calibration was made before gain was recorded, so gain "
                         "changes aren't compensated. Recalibrate to enable it.")
                   : QString();
    });
}

}  // namespace

void addChannelInputGainSection(Form& form, const ChannelValues& channel) {
    FormSection& section = form.addSection(QStringLiteral("Input Gain"));
    section.shownWhile([channel] { return !channel.isDigital().get(); });
    const auto failure = std::make_shared<QString>();
    addGainSlider(section, channel, failure);
    addVolumeRows(section, channel, failure);
    addWarning(section, [failure] { return *failure; });
    addCompensationRows(section, channel);
    section.addControl(QStringLiteral("Input level"),
                       new LiveInputLevelMeterView(channel.engine(), channel.id(), &section));
    section.addHelp(QStringLiteral(
        "Lowering the input gain (with the slider above, or in the system's sound settings) gives "
        "the mic more headroom before it clips. Where the device reports its gain, a calibrated "
        "channel's level in dB SPL stays the same."));
}

}  // namespace TarvaneApp
