#include "Shell/Preferences/FormHelp.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QGroupBox>
#include <algorithm>

#include "Displays/Theme.h"

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
    auto* help = new QLabel(text, parent);
    help->setFont(Typeface::installed().systemFont(Theme::Text::caption));
    help->setWordWrap(true);
    help->setTextFormat(Qt::PlainText);
    QPalette palette = help->palette();
    palette.setColor(QPalette::WindowText, Theme::axisText);
    help->setPalette(palette);
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
