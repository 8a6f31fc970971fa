#include "Shell/Preferences/AudioSettingsView.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Preferences/DeviceSourcePicker.h"
#include "Shell/Preferences/FormHelp.h"
#include "Shell/Preferences/InputChannelPicker.h"

namespace TarvaneApp {

AudioSettingsView::AudioSettingsView(MeterEngine& engine, QWidget* parent)
    : QWidget(parent), engine_(engine) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::Space::section);
    column->addWidget(makeRestartRow());
    QFormLayout* rows = addSection(this, QStringLiteral("Main Input"));
    addSourceRows(*rows);
    addStereoPairRows(*rows);
    column->addStretch(1);
}

void AudioSettingsView::addSourceRows(QFormLayout& rows) {
    QWidget* section = rows.parentWidget();
    auto* device = new QWidget(section);
    auto* deviceRow = new QHBoxLayout(device);
    deviceRow->setContentsMargins(0, 0, 0, 0);
    auto* picker = new DeviceSourcePicker(engine_, device);
    auto* refresh = new QPushButton(QStringLiteral("Refresh Devices"), device);
    refresh->setAutoDefault(false);
    connect(refresh, &QPushButton::clicked, this, [this] { engine_.refreshDevices(); });
    deviceRow->addWidget(picker, 1);
    deviceRow->addWidget(refresh);
    rows.addRow(QStringLiteral("Device"), device);
    static_cast<QLabel*>(rows.labelForField(device))->setBuddy(picker);

    auto* note = makeHelp(
        QStringLiteral("Measures what this machine is playing through its default output, in "
                       "stereo. No permission is needed."),
        section);
    rows.addRow(QString(), note);
    follow(engine_.selectedDeviceUID, note, [this, note] {
        const bool isSystemOutput = engine_.selectedDeviceUID() == TarvaneKit::systemOutputUID;
        note->setVisible(isSystemOutput);
    });

    rows.addRow(QStringLiteral("Input"),
                new InputChannelPicker(engine_, engine_.selectedChannelIndex, section));
    rows.addRow(QString(), makeHelp(QStringLiteral("Which input on this device your mic (or the "
                                                   "feed you want to measure) is on."),
                                    section));
}

void AudioSettingsView::addStereoPairRows(QFormLayout& rows) {
    QWidget* section = rows.parentWidget();
    auto* stereo = new QCheckBox(QStringLiteral("Stereo pair"), section);
    connect(stereo, &QCheckBox::toggled, this, [this](bool checked) {
        if (checked != engine_.mainInputIsStereo()) {
            engine_.mainInputIsStereo.set(checked);
        }
    });
    rows.addRow(QString(), stereo);
    auto* right = new InputChannelPicker(engine_, engine_.mainInputRightChannelIndex, section);
    rows.addRow(QStringLiteral("Right channel"), right);
    rows.addRow(QString(),
                makeHelp(QStringLiteral(
                             "Reads two inputs as one stereo source: the RTA and spectrogram show "
                             "both sides power-averaged (no false notches from out-of-phase "
                             "content), the SPL meter the combined level with L and R beside it, "
                             "Peak the higher side."),
                         section));
    QWidget* rightLabel = rows.labelForField(right);
    follow(engine_.mainInputIsStereo, section, [this, stereo, right, rightLabel] {
        const bool isStereo = engine_.mainInputIsStereo();
        stereo->setChecked(isStereo);
        right->setVisible(isStereo);
        rightLabel->setVisible(isStereo);
    });
}

QWidget* AudioSettingsView::makeRestartRow() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(
        new QLabel(QStringLiteral("Device or input changes take effect after a restart."), row), 1);
    auto* restart = new QPushButton(QStringLiteral("Restart Now"), row);
    restart->setAutoDefault(false);
    connect(restart, &QPushButton::clicked, this, [this] {
        engine_.stop();
        engine_.start();
    });
    layout->addWidget(restart);
    follow(engine_.channelSourcesChangedWhileRunning, row,
           [this, row] { row->setVisible(engine_.channelSourcesChangedWhileRunning()); });
    return row;
}

}  // namespace TarvaneApp
