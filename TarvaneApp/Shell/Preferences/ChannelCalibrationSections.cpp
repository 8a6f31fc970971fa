#include "Shell/Preferences/ChannelCalibrationSections.h"

#include <QFileDialog>
#include <cmath>
#include <filesystem>
#include <memory>

#include "Shell/Controls/FileDialogLabels.h"
#include "Shell/Controls/FileDrop.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Forms/FormWarning.h"
#include "Shell/Forms/NumberField.h"
#include "Shell/Preferences/ReferenceToneControl.h"
#include "Shell/Preferences/SignedDB.h"
#include "Shell/Preferences/TextFieldStore.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::CalibrationSource;

namespace {

QString mainStatus(const CalibrationProfile& profile) {
    switch (profile.calibrationSource()) {
        case CalibrationSource::none:
            break;
        case CalibrationSource::micCalFileSensFactor:
            return QStringLiteral("Calibrated from mic cal file");
        case CalibrationSource::referenceTone:
            return QStringLiteral("Calibrated from reference tone");
    }
    return QStringLiteral("Not calibrated — showing raw dBFS, not real SPL");
}

QString extraStatus(const CalibrationProfile& profile) {
    switch (profile.calibrationSource()) {
        case CalibrationSource::none:
            break;
        case CalibrationSource::micCalFileSensFactor:
            return QStringLiteral("Mic cal file, offset ") + signedDB(profile.broadbandOffsetDB());
        case CalibrationSource::referenceTone:
            return QStringLiteral("Reference tone, offset ") +
                   signedDB(profile.broadbandOffsetDB());
    }
    return QStringLiteral("None — showing dBFS");
}

void addStatusRows(FormSection& section, const ChannelValues& channel) {
    const auto hasReference = [channel] { return channel.calibration().reference.has_value(); };
    section.addReading(QStringLiteral("Status"), [channel] {
        const CalibrationProfile profile = channel.calibration();
        return channel.isMain() ? mainStatus(profile) : extraStatus(profile);
    });
    section
        .addReading(QStringLiteral("Offset"),
                    [channel] { return signedDB(channel.calibration().broadbandOffsetDB()); })
        .shownWhile([channel, hasReference] { return channel.isMain() && hasReference(); });
    section
        .addReading(QStringLiteral("Device"),
                    [channel] {
                        return QString::fromStdString(
                            channel.calibration().reference->referenceDeviceName.value_or(""));
                    })
        .shownWhile([channel] {
            const auto reference = channel.calibration().reference;
            return reference && reference->referenceDeviceName;
        });
    addWarning(section, [channel] {
        return channel.calibration().isStale(channel.device().get())
                   ? QStringLiteral(
                         "The reference calibration was made on another device. Recalibrate before "
                         "you rely on the level.")
                   : QString();
    });
}

void addReferenceSPLRows(FormSection& section, const ChannelValues& channel) {
    const auto hasSensFactor = [channel] {
        const auto file = channel.calibration().micCalFile;
        return file && file->sensFactorDB;
    };
    section
        .addReading(QStringLiteral("Sens Factor"),
                    [channel] {
                        return QString::asprintf("%.4f dB",
                                                 *channel.calibration().micCalFile->sensFactorDB);
                    })
        .shownWhile(hasSensFactor);
    section
        .addSlider(QStringLiteral("Reference SPL"),
                   {.lowest = 60.0,
                    .highest = 130.0,
                    .step = 1.0,
                    .text = [](double level) { return QString::number(level, 'f', 1) + " dB"; }},
                   channel.referenceSPL())
        .shownWhile(hasSensFactor);
    section.addHelp(QStringLiteral("(usually 94; some mics use 100)")).shownWhile(hasSensFactor);
    section
        .addHelp(QStringLiteral("This file has no Sens Factor: it corrects the spectrum's "
                                "frequency response and leaves "
                                "the level as it is."))
        .shownWhile([channel, hasSensFactor] {
            return channel.calibration().micCalFile && !hasSensFactor();
        });
}

// Files can also be dropped onto the section. What can't be taken is told under the button.
void addMicCalFileRows(FormSection& section, const ChannelValues& channel) {
    const auto failure = std::make_shared<QString>();
    const auto load = [channel, failure, &section](const std::filesystem::path& path) {
        *failure = QString::fromStdString(
            channel.engine().loadMicCalFile(path, channel.id()).value_or(std::string()));
        if (!failure->isEmpty()) {
            *failure =
                QString::fromStdString(path.filename().string()) + QStringLiteral(": ") + *failure;
        }
        section.refresh();
    };
    new FileDrop(section, load);
    const auto hasFile = [channel] { return channel.calibration().micCalFile.has_value(); };
    section.addReading(QStringLiteral("Mic cal file"), [hasFile] {
        return hasFile() ? QStringLiteral("Loaded") : QStringLiteral("Not loaded");
    });
    section
        .addReading(
            QStringLiteral("Serial number"),
            [channel] {
                return QString::fromStdString(*channel.calibration().micCalFile->serialNumber);
            })
        .shownWhile([channel] {
            const auto file = channel.calibration().micCalFile;
            return file && file->serialNumber;
        });
    section.addButton(QStringLiteral("Load Cal File…"), [load, &section] {
        auto* dialog = new QFileDialog(&section, QStringLiteral("Load Cal File"), {},
                                       QStringLiteral("Calibration files (*.txt *.cal *.frd *.csv)"
                                                      ";;All files (*)"));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        labelLists(*dialog);
        dialog->setFileMode(QFileDialog::ExistingFile);
        QObject::connect(dialog, &QFileDialog::fileSelected, &section,
                         [load](const QString& path) { load(path.toStdString()); });
        dialog->open();
    });
    addWarning(section, [failure] { return *failure; });
    addReferenceSPLRows(section, channel);
    section
        .addButton(QStringLiteral("Remove Cal File"),
                   [channel] { channel.engine().clearMicCalFile(channel.id()); })
        .shownWhile(hasFile);
    section.addHelp(QStringLiteral(
        "Loading a cal file with a Sens Factor applies SPL = Reference SPL + (measured dBFS − Sens "
        "Factor), the standard formula most measurement software uses for a fixed-sensitivity USB "
        "mic. It also corrects the spectrum/RTA display's frequency response."));
}

void addReferenceToneRows(FormSection& section, const ChannelValues& channel,
                          TextFieldStore& texts) {
    const auto known = publishedValue(texts.knownSPL);
    auto* field =
        new NumberField({.lowest = 0.0,
                         .highest = 200.0,
                         .unit = QStringLiteral("dB SPL"),
                         .problem = QStringLiteral("Enter a reference SPL between 0 and 200 dB.")},
                        known.set, &section);
    section.addControl(
        channel.isMain() ? QStringLiteral("Known reference SPL") : QStringLiteral("Known SPL"),
        field, [field, known] { field->showNumber(known.get()); });
    auto* control = new ReferenceToneControl(
        channel.engine(), channel.id(), [field] { return field->number(); }, &section);
    QObject::connect(field, &NumberField::edited, control, &ReferenceToneControl::refresh);
    section.addControl(QStringLiteral("Tone"), control, [control] { control->refresh(); });
    section
        .addButton(channel.isMain() ? QStringLiteral("Clear Reference Calibration")
                                    : QStringLiteral("Clear Reference"),
                   [channel] { channel.engine().clearReferenceCalibration(channel.id()); })
        .shownWhile([channel] { return channel.calibration().reference.has_value(); });
    section.addHelp(QStringLiteral(
        "Only needed if you want to double-check accuracy, or your device doesn't report its input "
        "gain. Play a steady reference tone at a known SPL (e.g. an acoustic calibrator at 94.0 dB "
        "@ 1 kHz), make sure Start is running, then click Calibrate — this always overrides the "
        "cal-file shortcut above."));
}

}  // namespace

void addChannelCalibrationSections(Form& form, const ChannelValues& channel,
                                   TextFieldStore& texts) {
    const auto addSection = [&](const QString& title) -> FormSection& {
        FormSection& section = form.addSection(title);
        section.shownWhile([channel] { return !channel.isDigital().get(); });
        return section;
    };
    FormSection& status = addSection(QStringLiteral("Calibration"));
    addStatusRows(status, channel);
    if (!channel.isMain()) {
        addMicCalFileRows(status, channel);
        addReferenceToneRows(status, channel, texts);
        return;
    }
    addMicCalFileRows(addSection(QStringLiteral("Mic Calibration File")), channel);
    addReferenceToneRows(
        addSection(QStringLiteral("Reference Tone Calibration (optional, more precise)")), channel,
        texts);
}

}  // namespace TarvaneApp
