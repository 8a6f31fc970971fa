#include "Shell/Preferences/FormHelp.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QGroupBox>
#include <QSignalBlocker>
#include <algorithm>

#include "Displays/Theme.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int paddingUpDown = 14;

}  // namespace

QFormLayout* addSection(QWidget* form, const QString& title) {
    auto* section = new QGroupBox(title, form);
    auto* rows = new QFormLayout(section);
    rows->setContentsMargins(Theme::Space::panel, paddingUpDown, Theme::Space::panel,
                             paddingUpDown);
    rows->setHorizontalSpacing(Theme::Space::panel);
    rows->setVerticalSpacing(Theme::Space::row);
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    rows->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    static_cast<QBoxLayout*>(form->layout())->addWidget(section);
    return rows;
}

QLabel* makeHelp(const QString& text, QWidget* parent) {
    auto* help = makeTextLabel(text, Theme::Text::caption, Theme::axisText, parent);
    help->setWordWrap(true);
    return help;
}

void setEntries(QComboBox& combo, const std::vector<ComboEntry>& entries, const QVariant& current) {
    const QSignalBlocker quiet(combo);
    combo.clear();
    for (const ComboEntry& entry : entries) {
        combo.addItem(entry.label, entry.value);
    }
    const auto found = std::ranges::find(entries, current, &ComboEntry::value);
    combo.setCurrentIndex(found != entries.end() ? static_cast<int>(found - entries.begin()) : -1);
}

}  // namespace TarvaneApp
