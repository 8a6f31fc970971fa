// The pieces that all preference forms are made of.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QVariant>
#include <vector>

class QFormLayout;

namespace TarvaneApp {

/// A titled section at the end of the form, and the layout of its rows.
QFormLayout* addSection(QWidget* form, const QString& title);

/// A small explanation under a control.
QLabel* makeHelp(const QString& text, QWidget* parent);

struct ComboEntry {
    QString label;
    QVariant value;
};

/// Replaces the entries without a signal, and selects the entry with that value.
void setEntries(QComboBox& combo, const std::vector<ComboEntry>& entries, const QVariant& current);

}  // namespace TarvaneApp
