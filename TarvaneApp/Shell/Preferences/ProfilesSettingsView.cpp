#include "Shell/Preferences/ProfilesSettingsView.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QUrl>

#include "Displays/RawText.h"
#include "Engine/MeterEngine.h"
#include "Profiles/ProfileStore.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Preferences/ProfileRow.h"

namespace TarvaneApp {

ProfilesSettingsView::ProfilesSettingsView(MeterEngine& engine, ProfileStore& profiles,
                                           QWidget* parent)
    : Form(parent), engine_(engine), profiles_(profiles) {
    addSavedProfiles();
    addSaving();
    addOptions();
    followAll(
        this, [this] { refresh(); }, profiles.profiles, profiles.activeProfileName,
        profiles.newProfileName, profiles.includeAudioAndCalibration);
}

void ProfilesSettingsView::addSavedProfiles() {
    FormSection& section = addSection(QStringLiteral("Saved Profiles"));
    const auto count = [this] { return static_cast<int>(profiles_.profiles().size()); };
    section
        .addHelp(QStringLiteral("No saved profiles yet. Set the app up the way you like it, then "
                                "save it below."))
        .shownWhile([count] { return count() == 0; });
    section
        .addList(count,
                 [this](int place, QWidget* parent) {
                     auto* row = new ProfileRow(engine_, profiles_, place, parent);
                     return FormList::Item{row, [row] { row->showProfile(); }};
                 })
        .shownWhile([count] { return count() > 0; });
}

void ProfilesSettingsView::addSaving() {
    FormSection& section = addSection(QStringLiteral("Save Current Settings"));
    section.addTextField(
        QStringLiteral("Profile name"),
        {.get = [this] { return utf8Text(profiles_.newProfileName()); },
         .set = [this](const QString& text) { profiles_.newProfileName.set(text.toStdString()); }},
        FormTextField::Counts::asTyped);
    section
        .addButton(QStringLiteral("Save"),
                   [this] { profiles_.saveCurrent(engine_, profiles_.newProfileName()); })
        .enabledWhile([this] { return !utf8Text(profiles_.newProfileName()).trimmed().isEmpty(); });
    section.addHelp(QStringLiteral(
        "Saves everything — colors, display, layout, every graph's settings, traffic lights, Leq, "
        "and spectrogram color presets. Saving under a name that already exists overwrites that "
        "profile."));
}

void ProfilesSettingsView::addOptions() {
    FormSection& section = addSection(QStringLiteral("Options"));
    section.addToggle(QStringLiteral("Loading also switches input device & calibration"),
                      settingValue(profiles_.includeAudioAndCalibration));
    section.addHelp(QStringLiteral(
        "Turn off when several people share the same computer and mic, so loading someone's "
        "profile keeps the current calibration. Channels still take all their display settings "
        "(name, color, RTA, readout, target curve, spectrogram range, ring-out) from the profile; "
        "their device, inputs and calibration stay as they are."));
    section.addButtons(
        {makeFormButton(
             QStringLiteral("Import…"), [this] { profiles_.importProfiles(); }, this),
         makeFormButton(
             QStringLiteral("Show in File Manager"), [this] { showInFileManager(); }, this)});
}

// Before the first profile there is no folder to show.
void ProfilesSettingsView::showInFileManager() {
    const QString folder = QFile::decodeName(profiles_.folder().c_str());
    QDir().mkpath(folder);
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

}  // namespace TarvaneApp
