#include "Shell/Preferences/LeqSettingsView.h"

#include <QComboBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/LeqPresets.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Preferences/FormHelp.h"

namespace TarvaneApp {

using TarvaneKit::Weighting;

namespace {

QComboBox* makeWeightingPicker(MeterEngine& engine, QWidget* parent) {
    auto* picker = new QComboBox(parent);
    QObject::connect(picker, &QComboBox::activated, parent, [&engine](int index) {
        engine.leqWeighting.set(EnumChoice<Weighting>::at(index));
    });
    picker->addItems(EnumChoice<Weighting>::labels());
    follow(engine.leqWeighting, picker, [&engine, picker] {
        picker->setCurrentIndex(EnumChoice<Weighting>::index(engine.leqWeighting()));
    });
    return picker;
}

// A stored time without a preset has an entry of its own.
QComboBox* makeTimePicker(MeterEngine& engine, QWidget* parent) {
    auto* picker = new QComboBox(parent);
    QObject::connect(picker, &QComboBox::activated, parent, [&engine, picker] {
        engine.leqIntegrationSeconds.set(picker->currentData().toDouble());
    });
    follow(engine.leqIntegrationSeconds, picker, [&engine, picker] {
        const double current = engine.leqIntegrationSeconds();
        std::vector<ComboEntry> entries;
        for (const LeqPreset& preset : leqPresets) {
            entries.push_back({QString::fromLatin1(preset.label), preset.seconds});
        }
        if (std::ranges::find(leqPresets, current, &LeqPreset::seconds) == leqPresets.end()) {
            entries.push_back({leqTimeLabel(current), current});
        }
        setEntries(*picker, entries, current);
    });
    return picker;
}

}  // namespace

LeqSettingsView::LeqSettingsView(MeterEngine& engine, QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::Margins::form);
    QFormLayout* rows = addSection(this, QStringLiteral("User-Definable Leq"));
    QWidget* section = rows->parentWidget();
    rows->addRow(QStringLiteral("Weighting"), makeWeightingPicker(engine, section));
    rows->addRow(QStringLiteral("Integration time"), makeTimePicker(engine, section));
    auto* apply = new QPushButton(QStringLiteral("Apply"), section);
    apply->setAutoDefault(false);
    apply->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(apply, &QPushButton::clicked, this, [&engine] {
        engine.configureLeq(engine.leqWeighting(), engine.leqIntegrationSeconds());
    });
    rows->addRow(QString(), apply);
    rows->addRow(
        QString(),
        makeHelp(QStringLiteral("Applying resets the current Leq accumulation."), section));
    column->addStretch(1);
}

}  // namespace TarvaneApp
