#include "Shell/Preferences/DisplaySettingsView.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <algorithm>
#include <numeric>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Records/SpectrogramColorRamp.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Preferences/LevelColorControl.h"
#include "Shell/Preferences/SpectrogramRampBar.h"
#include "Shell/Preferences/TextFieldStore.h"

namespace TarvaneApp {

namespace ColorRamp = SpectrogramColorRamp;
using TarvaneKit::RGBAColor;

namespace {

// Where the range is so narrow that steps of a whole dB would be few.
constexpr double narrowRangeDB = 20.0;
constexpr int presetBarWidth = 140;

}  // namespace

DisplaySettingsView::DisplaySettingsView(MeterEngine& engine, TextFieldStore& texts,
                                         QWidget* parent)
    : Form(parent), engine_(engine), texts_(texts) {
    addMeter();
    addRamp();
    addPresets();
    followChannels(engine.channelChanges(), this, [this] { refresh(); });
    followAll(
        this, [this] { refresh(); }, engine.splReadoutShowsClock, engine.spectrogramChannelID,
        texts.newSpectrogramPresetName);
}

void DisplaySettingsView::addMeter() {
    FormSection& section = addSection(QStringLiteral("SPL Meter"));
    section.addToggle(QStringLiteral("Show clock instead of SPL meter"),
                      settingValue(engine_.splReadoutShowsClock));
    section.addHelp(QStringLiteral(
        "Replaces the whole SPL meter module — value, Min/Max, and Reset — with a live clock, "
        "wherever that module is placed. Also toggled from the View menu or Ctrl+Shift+C."));
    section.addToggle(QStringLiteral("Show level bar in SPL meter"),
                      settingValue(engine_.splMeterShowsLevelBar));
    section.addHelp(QStringLiteral(
        "Readout units, the RTA's view, band resolution, peak hold, ring-out sensitivity and "
        "target curve are set per channel, in each channel's Display section in the Audio tab."));
}

// --- the ramp

void DisplaySettingsView::addRamp() {
    FormSection& section = addSection(QStringLiteral("Spectrogram"));
    auto* bar = new SpectrogramRampBar(SpectrogramRampBar::Shows::colorsAndLevels, &section);
    section.addControl({}, bar, [this, bar] {
        bar->setRamp(engine_.spectrogramColorStops());
        bar->setEnds(levels().text(range().floorDB), levels().text(range().ceilingDB));
    });
    stopRows_ = &section
                     .addList(
                         [this] {
                             orderStops();
                             return static_cast<int>(stopOfRow_.size());
                         },
                         [this](int place, QWidget* parent) {
                             return makeStop(static_cast<std::size_t>(place), parent);
                         })
                     .control();
    auto* add = makeFormButton(
        QStringLiteral("Add Color"),
        [this] {
            engine_.spectrogramColorStops.set(
                ColorRamp::withStopInWidestGap(engine_.spectrogramColorStops()));
        },
        &section);
    add->setIcon(
        Icon::tinted(QStringLiteral("plus.circle"), Theme::Symbol::options, Theme::primaryText));
    auto* reset = makeFormButton(
        QStringLiteral("Reset to Default"),
        [this] { engine_.spectrogramColorStops.set(defaultSpectrogramColorStops()); }, &section);
    section.addButtons({add, reset}, [this, reset] {
        reset->setEnabled(!ColorRamp::isSameRamp(engine_.spectrogramColorStops(),
                                                 defaultSpectrogramColorStops()));
    });
    section.addHelp(QStringLiteral(
        "Each slider sets the dB level (between the toolbar's Floor/Ceiling) where that color "
        "kicks in — drag a stop's slider to change where it sits, or its swatch to change its "
        "color. Add Color inserts a new stop into the ramp's widest gap; the minus button removes "
        "a stop."));
}

// Rows stand in the order of their levels. While the user works in one of them they stay where they
// are, though its stop passes others.
void DisplaySettingsView::orderStops() {
    const auto& stops = engine_.spectrogramColorStops();
    const bool areInUse = stopRows_->isAncestorOf(window()->focusWidget());
    if (areInUse && stopOfRow_.size() == stops.size()) {
        return;
    }
    stopOfRow_.resize(stops.size());
    std::iota(stopOfRow_.begin(), stopOfRow_.end(), std::size_t{0});
    std::ranges::stable_sort(stopOfRow_, {},
                             [&](std::size_t stop) { return stops[stop].position; });
}

void DisplaySettingsView::editStop(std::size_t place,
                                   const std::function<void(SpectrogramColorStop&)>& edit) {
    auto stops = engine_.spectrogramColorStops();
    edit(stops[stopOfRow_[place]]);
    engine_.spectrogramColorStops.set(std::move(stops));
}

FormList::Item DisplaySettingsView::makeStop(std::size_t place, QWidget* parent) {
    const QString name = QStringLiteral("Color %1").arg(place + 1);
    auto* control = new LevelColorControl(
        {.level = name + QStringLiteral(", level"), .color = name},
        [this, place](double levelDB) {
            editStop(place, [&](SpectrogramColorStop& stop) {
                stop.position = ColorRamp::position(levelDB, range());
            });
        },
        [this, place](const RGBAColor& color) {
            editStop(place, [&](SpectrogramColorStop& stop) { stop.color = color; });
        },
        parent);
    auto* remove = new IconButton(Theme::Symbol::options, control);
    remove->setSymbol(QStringLiteral("minus.circle"), Theme::axisText);
    remove->setHelp(QStringLiteral("Remove ") + name, QStringLiteral("Remove"));
    connect(remove, &QAbstractButton::clicked, this, [this, place] {
        auto stops = engine_.spectrogramColorStops();
        stops.erase(stops.begin() + static_cast<std::ptrdiff_t>(stopOfRow_[place]));
        engine_.spectrogramColorStops.set(std::move(stops));
    });
    control->addBehind(remove);
    return {
        control, [this, control, remove, place] {
            const SpectrogramColorStop& stop = engine_.spectrogramColorStops()[stopOfRow_[place]];
            control->showValues(levels(), ColorRamp::levelDB(stop.position, range()), stop.color);
            // Without any stop the picture would be white at every level.
            remove->setEnabled(stopOfRow_.size() > 1);
        }};
}

SpectrogramRange DisplaySettingsView::range() const {
    return engine_.spectrogramRange(engine_.resolvedChannelID(engine_.spectrogramChannelID()));
}

NumberScale DisplaySettingsView::levels() const {
    const SpectrogramRange ends = range();
    const bool isNarrow = ends.ceilingDB - ends.floorDB < narrowRangeDB;
    const bool isDBFS =
        engine_.rtaScale(engine_.resolvedChannelID(engine_.spectrogramChannelID())) ==
        RTAScale::dbfs;
    const QString unit = isDBFS ? QStringLiteral(" dBFS") : QStringLiteral(" dB");
    return {.lowest = ends.floorDB,
            .highest = ends.ceilingDB,
            .step = isNarrow ? 0.1 : 1.0,
            .text = [unit, decimals = isNarrow ? 1 : 0](double levelDB) {
                return QString::number(levelDB, 'f', decimals) + unit;
            }};
}

// --- presets

void DisplaySettingsView::addPresets() {
    FormSection& section = addSection(QStringLiteral("Spectrogram Color Presets"));
    const auto count = [this] {
        return static_cast<int>(engine_.spectrogramColorPresets().size());
    };
    section
        .addHelp(QStringLiteral("No saved presets yet. Dial in a ramp above, then save it below to "
                                "recall it later."))
        .shownWhile([count] { return count() == 0; });
    section
        .addList(count,
                 [this](int place, QWidget* parent) {
                     return makePreset(static_cast<std::size_t>(place), parent);
                 })
        .shownWhile([count] { return count() > 0; });
    section.addTextField(QStringLiteral("Preset name"),
                         publishedValue(texts_.newSpectrogramPresetName),
                         FormTextField::Counts::asTyped);
    section.addButton(QStringLiteral("Save Current as Preset"), [this] { savePreset(); })
        .enabledWhile([this] { return !texts_.newSpectrogramPresetName().trimmed().isEmpty(); });
    section.addHelp(
        QStringLiteral("Saving under a name that already exists overwrites that preset."));
}

void DisplaySettingsView::savePreset() {
    engine_.spectrogramColorPresets.set(
        ColorRamp::withPreset(engine_.spectrogramColorPresets(),
                              {.name = texts_.newSpectrogramPresetName().trimmed().toStdString(),
                               .stops = engine_.spectrogramColorStops()}));
    texts_.newSpectrogramPresetName.set({});
}

FormList::Item DisplaySettingsView::makePreset(std::size_t place, QWidget* parent) {
    auto* item = new QWidget(parent);
    auto* row = layOutRow(item, Theme::Space::section);
    auto* name = new ElidedLabel(Theme::Text::body, Theme::primaryText, item);
    auto* bar = new SpectrogramRampBar(SpectrogramRampBar::Shows::colors, item);
    bar->setFixedWidth(presetBarWidth);
    auto* apply = makeFormButton(
        QStringLiteral("Apply"),
        [this, place] {
            engine_.spectrogramColorStops.set(engine_.spectrogramColorPresets()[place].stops);
        },
        item);
    auto* remove = new IconButton(Theme::Symbol::options, item);
    remove->setSymbol(QStringLiteral("trash"), Theme::axisText);
    connect(remove, &QAbstractButton::clicked, this, [this, place] {
        auto presets = engine_.spectrogramColorPresets();
        presets.erase(presets.begin() + static_cast<std::ptrdiff_t>(place));
        engine_.spectrogramColorPresets.set(std::move(presets));
    });
    row->addWidget(name, 1);
    row->addWidget(bar);
    row->addWidget(apply);
    row->addWidget(remove);
    return {item, [this, place, name, bar, apply, remove] {
                const SpectrogramColorPreset& preset = engine_.spectrogramColorPresets()[place];
                const QString title = utf8Text(preset.name);
                name->setText(title);
                bar->setRamp(preset.stops);
                apply->setAccessibleName(QStringLiteral("Apply ") + title);
                remove->setHelp(QStringLiteral("Delete ") + title, QStringLiteral("Delete"));
            }};
}

}  // namespace TarvaneApp
